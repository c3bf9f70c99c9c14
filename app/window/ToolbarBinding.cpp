// The band toolbar smuiDTM: command buttons with their pictures, the pressed
// "hideTree" button, and the header's status pictures and texts. A band is
// a group of items between separators; a click raises ButtonClick with the
// item's key.
#include "app/window/WidgetBinding.h"

#include <QAction>
#include <QLabel>
#include <QToolBar>
#include <QWidgetAction>

#include <map>

namespace kt500::window {

namespace {

using form::PropertyId;
using form::ToolbarItemStyle;

constexpr int kIconPixels = 16;

class Toolbar final : public WidgetBinding {
public:
    Toolbar(form::Control& control, ViewContext& context, QWidget* parent)
        : WidgetBinding(control, context), m_widget(new QToolBar(parent)) {
        m_widget->setObjectName(Qs(control.displayName()));
        m_widget->setIconSize(QSize(kIconPixels, kIconPixels));
        m_widget->setToolButtonStyle(Qt::ToolButtonIconOnly);
        m_widget->setMovable(false);
        m_widget->setFloatable(false);
    }
    [[nodiscard]] QWidget* widget() const override { return m_widget; }

    void mirror(PropertyId id, std::string_view key, int /*item*/) override {
        if (id != PropertyId::Buttons) {
            return;
        }
        const form::ToolbarModel& toolbar = m_control.toolbar();
        const auto found = m_actions.find(std::string(key));
        if (key.empty() || found == m_actions.end() || toolbar.find(key) == nullptr) {
            rebuild();
            return;
        }
        update(*toolbar.find(key), *found->second);
    }
    void mirrorAll() override { rebuild(); }

    // The action of an item, for tests and the screenshot walk.
    [[nodiscard]] QAction* actionOf(const std::string& key) const {
        const auto found = m_actions.find(key);
        return found == m_actions.end() ? nullptr : found->second;
    }

private:
    void rebuild() {
        const QList<QAction*> old = m_widget->actions();
        m_widget->clear();
        qDeleteAll(old);
        m_actions.clear();
        const form::ToolbarModel& toolbar = m_control.toolbar();
        for (std::size_t band = 0; band < toolbar.bands().size(); ++band) {
            if (band > 0) {
                m_widget->addSeparator()->setVisible(toolbar.bands()[band].visible);
            }
            for (const std::string& key : toolbar.bandItems(static_cast<int>(band))) {
                m_actions[key] = add(toolbar.item(key));
            }
        }
        for (const form::ToolbarItem& item : toolbar.items()) {
            update(item, *m_actions[item.key]);
        }
    }

    QAction* add(const form::ToolbarItem& item) {
        if (item.style == ToolbarItemStyle::Label || item.style == ToolbarItemStyle::Image) {
            auto* label = new QLabel(m_widget);
            label->setObjectName(Qs(item.key));
            label->setContentsMargins(1, 0, 1, 0);
            return m_widget->addWidget(label);
        }
        if (item.style == ToolbarItemStyle::Separator) {
            return m_widget->addSeparator();
        }
        QAction* action = m_widget->addAction(Qs(item.key));
        action->setObjectName(Qs(item.key));
        action->setCheckable(item.style == ToolbarItemStyle::Check);
        QObject::connect(action, &QAction::triggered, m_widget, [this, key = item.key] {
            // The model keeps the pressed state; the logic sets it.
            if (QAction* pressed = actionOf(key); pressed != nullptr && pressed->isCheckable()) {
                pressed->setChecked(m_control.toolbar().item(key).pressed);
            }
            deliver([this, key] { m_context.form.raiseToolbarClick(m_control, key); });
        });
        return action;
    }

    void update(const form::ToolbarItem& item, QAction& action) {
        const bool bandVisible = m_control.toolbar().bands().at(item.band).visible;
        action.setVisible(item.visible && bandVisible);
        action.setEnabled(item.enabled);
        const QString text = Qs(item.text.empty() ? item.captionKey : item.text);
        if (auto* widgetAction = qobject_cast<QWidgetAction*>(&action)) {
            auto* label = qobject_cast<QLabel*>(widgetAction->defaultWidget());
            if (item.style == ToolbarItemStyle::Image) {
                label->setPixmap(
                    m_context.icons.pixmap(item.picture, QSize(kIconPixels, kIconPixels)));
            } else {
                label->setText(text);
            }
            label->setToolTip(Qs(item.toolTip));
            return;
        }
        action.setText(text);
        action.setToolTip(Qs(item.toolTip.empty() ? text.toStdString() : item.toolTip));
        action.setIcon(m_context.icons.icon(item.picture));
        action.setChecked(item.pressed);
    }

    QToolBar* m_widget;
    std::map<std::string, QAction*, std::less<>> m_actions;
};

}  // namespace

std::unique_ptr<WidgetBinding> MakeToolbarBinding(form::Control& control, ViewContext& context,
                                                  QWidget* parent) {
    if (control.kind() != form::ControlKind::Toolbar) {
        return nullptr;
    }
    return std::make_unique<Toolbar>(control, context, parent);
}

}  // namespace kt500::window
