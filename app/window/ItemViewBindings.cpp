// The widgets of the item views: the tree views (navigation, status) and
// the list views (confirmation, event log).
#include "app/window/WidgetBinding.h"

#include <QApplication>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QTreeWidget>

#include <map>

namespace kt500::window {

namespace {

using form::ControlKind;
using form::PropertyId;

// A tree view: the nodes by key with their texts, state pictures, expansion
// and selection. A click on a node (or a keyboard move onto one) raises
// NodeClick; expanding and collapsing is kept in the model, with no event.
class TreeView final : public WidgetBinding {
public:
    TreeView(form::Control& control, ViewContext& context, QWidget* parent)
        : WidgetBinding(control, context), m_widget(new QTreeWidget(parent)) {
        m_widget->setObjectName(Qs(control.displayName()));
        m_widget->setHeaderHidden(true);
        m_widget->setIconSize(QSize(16, 16));
        m_widget->setIndentation(12);
        // Long page names scroll rather than end in an ellipsis.
        m_widget->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        m_widget->header()->setStretchLastSection(false);
        m_widget->setTextElideMode(Qt::ElideNone);
        QObject::connect(m_widget, &QTreeWidget::itemClicked, m_widget,
                         [this](QTreeWidgetItem* item) { raiseNodeClick(item); });
        QObject::connect(m_widget, &QTreeWidget::currentItemChanged, m_widget,
                         [this](QTreeWidgetItem* item) {
                             // A mouse press moves the current node too; its
                             // click follows on release.
                             if (QApplication::mouseButtons() == Qt::NoButton) {
                                 raiseNodeClick(item);
                             }
                         });
        const auto expansion = [this](QTreeWidgetItem* item, bool expanded) {
            const std::string key = item->data(0, Qt::UserRole).toString().toStdString();
            deliver([this, key, expanded] {
                if (m_control.tree().find(key) != nullptr) {
                    m_control.tree().setExpanded(key, expanded);
                }
            });
        };
        QObject::connect(m_widget, &QTreeWidget::itemExpanded, m_widget,
                         [expansion](QTreeWidgetItem* item) { expansion(item, true); });
        QObject::connect(m_widget, &QTreeWidget::itemCollapsed, m_widget,
                         [expansion](QTreeWidgetItem* item) { expansion(item, false); });
    }
    [[nodiscard]] QWidget* widget() const override { return m_widget; }

    void mirror(PropertyId id, std::string_view key, int /*item*/) override {
        if (id != PropertyId::Nodes) {
            return;
        }
        const form::TreeModel& tree = m_control.tree();
        const auto found = m_items.find(std::string(key));
        if (key.empty() || found == m_items.end() || tree.find(key) == nullptr ||
            static_cast<int>(m_items.size()) != tree.count()) {
            rebuild();
            return;
        }
        update(*tree.find(key), *found->second);
        mirrorSelection();
    }
    void mirrorAll() override { rebuild(); }

private:
    void raiseNodeClick(QTreeWidgetItem* item) {
        if (item == nullptr) {
            return;
        }
        const std::string key = item->data(0, Qt::UserRole).toString().toStdString();
        deliver([this, key] {
            if (m_control.tree().find(key) != nullptr) {
                m_context.form.raiseNodeClick(m_control, key);
            }
        });
    }

    void update(const form::TreeNode& node, QTreeWidgetItem& item) {
        item.setText(0, Qs(node.text));
        item.setIcon(0, m_context.icons.icon(node.image));
        item.setExpanded(node.expanded);
    }

    void rebuild() {
        m_widget->clear();
        m_items.clear();
        // Nodes come parents first, so every parent's item exists.
        for (const form::TreeNode& node : m_control.tree().nodes()) {
            QTreeWidgetItem* item = nullptr;
            if (const auto parent = m_items.find(node.parentKey); parent != m_items.end()) {
                item = new QTreeWidgetItem(parent->second);
            } else {
                item = new QTreeWidgetItem(m_widget);
            }
            item->setData(0, Qt::UserRole, Qs(node.key));
            m_items[node.key] = item;
        }
        for (const form::TreeNode& node : m_control.tree().nodes()) {
            update(node, *m_items[node.key]);
        }
        mirrorSelection();
    }

    void mirrorSelection() {
        const auto selected = m_items.find(m_control.tree().selectedKey());
        QTreeWidgetItem* item = selected == m_items.end() ? nullptr : selected->second;
        if (m_widget->currentItem() != item) {
            m_widget->setCurrentItem(item);
        }
        if (item != nullptr) {
            m_widget->scrollToItem(item);
        }
    }

    QTreeWidget* m_widget;
    std::map<std::string, QTreeWidgetItem*, std::less<>> m_items;
};

// A list view: the column headers, and the rows with their sub-items and
// check boxes. Ticking a row raises ItemCheck with the row's number.
class ListView final : public WidgetBinding {
public:
    ListView(form::Control& control, ViewContext& context, QWidget* parent)
        : WidgetBinding(control, context), m_widget(new QTreeWidget(parent)) {
        m_widget->setObjectName(Qs(control.displayName()));
        m_widget->setRootIsDecorated(false);
        m_widget->setUniformRowHeights(true);
        m_widget->setAlternatingRowColors(true);
        QObject::connect(
            m_widget, &QTreeWidget::itemChanged, m_widget,
            [this](QTreeWidgetItem* item, int column) {
                if (column != 0) {
                    return;
                }
                const int row = m_widget->indexOfTopLevelItem(item) + 1;
                const bool checked = item->checkState(0) == Qt::Checked;
                deliver([this, row, checked] {
                    const form::ListViewModel& list = m_control.listView();
                    if (row >= 1 && row <= list.count() && list.row(row).checked != checked) {
                        m_context.form.raiseItemCheck(m_control, row, checked);
                    }
                });
            });
        QObject::connect(m_widget, &QTreeWidget::itemDoubleClicked, m_widget,
                         [this] { deliver([this] { m_context.form.raiseDblClick(m_control); }); });
    }
    [[nodiscard]] QWidget* widget() const override { return m_widget; }

    void mirror(PropertyId id, std::string_view /*key*/, int item) override {
        if (id == PropertyId::ColumnHeaders) {
            mirrorColumns();
        } else if (id == PropertyId::ListItems || id == PropertyId::CheckBoxes) {
            const form::ListViewModel& list = m_control.listView();
            if (item >= 1 && item <= list.count() &&
                list.count() == m_widget->topLevelItemCount()) {
                update(item, *m_widget->topLevelItem(item - 1));
            } else {
                rebuild();
            }
        }
    }
    void mirrorAll() override {
        mirrorColumns();
        rebuild();
    }

private:
    void mirrorColumns() {
        const auto& columns = m_control.listView().columns();
        m_widget->setColumnCount(static_cast<int>(std::max<std::size_t>(columns.size(), 1)));
        QStringList headers;
        for (const form::ListColumn& column : columns) {
            headers << Qs(column.text.empty() ? column.captionKey : column.text);
        }
        m_widget->setHeaderLabels(headers);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            m_widget->setColumnWidth(static_cast<int>(i), m_context.scale.pixels(columns[i].width));
        }
    }

    void update(int number, QTreeWidgetItem& item) {
        const form::ListViewModel& list = m_control.listView();
        const form::ListRow& row = list.row(number);
        item.setText(0, Qs(row.text));
        for (std::size_t i = 0; i < row.subItems.size(); ++i) {
            item.setText(static_cast<int>(i) + 1, Qs(row.subItems[i]));
        }
        if (list.checkBoxes()) {
            item.setCheckState(0, row.checked ? Qt::Checked : Qt::Unchecked);
        } else {
            item.setData(0, Qt::CheckStateRole, QVariant());
        }
        item.setSelected(row.selected);
    }

    void rebuild() {
        m_widget->clear();
        const form::ListViewModel& list = m_control.listView();
        for (int number = 1; number <= list.count(); ++number) {
            update(number, *new QTreeWidgetItem(m_widget));
        }
    }

    QTreeWidget* m_widget;
};

}  // namespace

std::unique_ptr<WidgetBinding> MakeItemViewBinding(form::Control& control, ViewContext& context,
                                                   QWidget* parent) {
    switch (control.kind()) {
        case ControlKind::TreeView:
            return std::make_unique<TreeView>(control, context, parent);
        case ControlKind::ListView:
            return std::make_unique<ListView>(control, context, parent);
        default:
            return nullptr;
    }
}

}  // namespace kt500::window
