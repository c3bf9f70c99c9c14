#include "app/window/FormView.h"

#include "app/window/ChartFit.h"
#include "app/window/DateRows.h"
#include "app/window/Mnemonics.h"
#include "app/window/RowGaps.h"

#include <QAbstractSpinBox>
#include <QAction>
#include <QPushButton>
#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolBar>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>
#include <vector>

namespace kt500::window {

namespace {

using form::ControlKind;
using form::PropertyId;

constexpr int kHourglass = 11;
// The widest the tree's pane grows beyond the form's measure.
constexpr int kMostTreeExtra = 600;

// The handle between the tree and the page: dragging it sideways widens or
// narrows the tree's pane.
class SplitHandle final : public QWidget {
public:
    SplitHandle(QWidget* parent, std::function<int()> extra, std::function<void(int)> resize)
        : QWidget(parent), m_extra(std::move(extra)), m_resize(std::move(resize)) {
        setObjectName(QStringLiteral("treeSplitHandle"));
        setCursor(Qt::SplitHCursor);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override {
        m_start = event->globalPosition().toPoint().x();
        m_startExtra = m_extra();
        event->accept();
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if ((event->buttons() & Qt::LeftButton) != 0) {
            m_resize(m_startExtra + event->globalPosition().toPoint().x() - m_start);
        }
    }

private:
    std::function<int()> m_extra;
    std::function<void(int)> m_resize;
    int m_start = 0;
    int m_startExtra = 0;
};

// The page a control lies on: its outermost container, nullptr for a
// control on the user control itself.
const form::Control* pageOf(const form::Control& control) {
    const form::Control* page = control.container();
    while (page != nullptr && page->container() != nullptr) {
        page = page->container();
    }
    return page;
}

}  // namespace

FormView::FormView(form::Form& form, IconStore& icons, LogicGate& gate, TwipScale scale,
                   QWidget* parent, QString timeStampFormat)
    : QWidget(parent),
      m_form(form),
      m_scale(scale),
      m_context{form, m_scale, icons, gate, std::move(timeStampFormat)} {
    setObjectName(QStringLiteral("RavikKT500"));
    setFixedSize(m_scale.pixels(form::Form::kUserControlWidth),
                 m_scale.pixels(form::Form::kUserControlHeight));
    m_tree = form.find("treeNavigation");
    m_splitHandle = new SplitHandle(
        this, [this] { return m_treeExtra; }, [this](int pixels) { setTreeExtra(pixels); });
    for (form::Control* control : form.controls()) {
        buildAfterContainer(*control);
    }
    // The progress frame lies over the foot of the pages, which the later
    // family files declare: it stays on top of them.
    if (const form::Control* progress = form.find("fraProgress")) {
        if (QWidget* widget = widgetOf(*progress)) {
            widget->raise();
        }
    }
    mirrorUserControl(PropertyId::MousePointer);
    for (const form::Control* page : form.children(nullptr)) {
        if (page->kind() == ControlKind::Frame) {
            placeRows(*page);  // the rows that the logic hid before the view
        }
    }
    setTreeExtra(0);  // at least what the captions need
    orderTabs();
    assignMnemonics(nullptr);
    for (const form::Control* page : form.children(nullptr)) {
        if (page->kind() == ControlKind::Frame) {
            assignMnemonics(page);
        }
    }
    m_observer = form.addObserver([this](const form::PropertyChange& change) { onChange(change); });
}

FormView::~FormView() {
    m_form.removeObserver(m_observer);
    if (m_busyCursor) {
        QApplication::restoreOverrideCursor();
    }
}

QWidget* FormView::containerWidget(const form::Control& control) const {
    if (control.container() == nullptr) {
        return const_cast<FormView*>(this);
    }
    return widgetOf(*control.container());
}

QWidget* FormView::widgetOf(const form::Control& control) const {
    const auto found = m_bindings.find(&control);
    return found == m_bindings.end() ? nullptr : found->second->widget();
}

QAction* FormView::toolbarAction(const std::string& key) const {
    const form::Control* toolbar = m_form.find("smuiDTM", 1);
    QWidget* widget = toolbar == nullptr ? nullptr : widgetOf(*toolbar);
    return widget == nullptr ? nullptr : widget->findChild<QAction*>(QString::fromStdString(key));
}

void FormView::buildAfterContainer(form::Control& control) {
    if (m_bindings.contains(&control)) {
        return;
    }
    if (form::Control* container = control.container()) {
        buildAfterContainer(*container);
    }
    build(control);
}

void FormView::build(form::Control& control) {
    auto binding = MakeBinding(control, m_context, containerWidget(control));
    QWidget* widget = binding->widget();
    WidgetBinding& bound = *m_bindings.emplace(&control, std::move(binding)).first->second;
    if (widget == nullptr) {
        return;
    }
    const QSignalBlocker blocker(widget);
    widget->setGeometry(placed(control));
    applyToolTip(control, *widget);  // before the kind's own (a time stamp's)
    bound.mirrorAll();
    mirrorCommon(control, *widget, PropertyId::Enabled);
    mirrorCommon(control, *widget, PropertyId::Visible);
}

void FormView::mirrorCommon(form::Control& control, QWidget& widget, PropertyId id) {
    switch (id) {
        case PropertyId::Left:
        case PropertyId::Top:
        case PropertyId::Width:
        case PropertyId::Height:
            widget.setGeometry(placed(control));
            break;
        case PropertyId::Visible:
            if (DatePlaceOf(m_form, control) == DatePlace::Dropped) {
                widget.setVisible(false);  // the date editor's row stands for it
            } else if (control.has(PropertyId::Visible)) {
                widget.setVisible(control.visible());
            }
            if (const form::Control* page = RowPageOf(control)) {
                placeRows(*page);  // a row shown or hidden moves the rows below
            } else if (control.container() != nullptr &&
                       control.kind() != form::ControlKind::Chart) {
                placeCharts(*control.container());  // the free room may have changed
            }
            if (&control == m_tree) {
                relayout();  // the pane comes and goes with the tree
            }
            break;
        case PropertyId::Enabled:
            if (control.has(PropertyId::Enabled)) {
                widget.setEnabled(control.enabled());
            }
            break;
        case PropertyId::ToolTipText:
        case PropertyId::Tag:
            applyToolTip(control, widget);
            break;
        case PropertyId::Container:
            if (QWidget* parent = containerWidget(control); parent != widget.parentWidget()) {
                widget.setParent(parent);
                widget.setGeometry(placed(control));
                widget.setVisible(control.visible());
            }
            break;
        default:
            break;
    }
}

void FormView::mirrorUserControl(PropertyId id) {
    const form::Control& user = m_form.userControl();
    if (id == PropertyId::MousePointer) {
        const bool busy = user.mousePointer() == kHourglass;
        if (busy && !m_busyCursor) {
            QApplication::setOverrideCursor(Qt::BusyCursor);
        } else if (!busy && m_busyCursor) {
            QApplication::restoreOverrideCursor();
        }
        m_busyCursor = busy;
    } else if (id == PropertyId::Visible) {
        setVisible(user.visible());
    }
}

void FormView::onChange(const form::PropertyChange& change) {
    form::Control& control = change.control;
    if (&control == &m_form.userControl()) {
        mirrorUserControl(change.property);
        return;
    }
    const auto found = m_bindings.find(&control);
    if (found == m_bindings.end()) {
        build(control);  // a control created at run time
        return;
    }
    WidgetBinding& binding = *found->second;
    QWidget* widget = binding.widget();
    if (change.property == PropertyId::Name) {  // leaving the form
        delete widget;
        m_bindings.erase(found);
        return;
    }
    if (widget == nullptr) {
        mirrorDatePart(control, change);
        return;
    }
    const QSignalBlocker blocker(widget);
    mirrorCommon(control, *widget, change.property);
    binding.mirror(change.property, change.key, change.item);
    if (control.kind() == ControlKind::CommandButton && change.property == PropertyId::Caption) {
        assignMnemonics(pageOf(control));
    }
    if (&control == m_tree && change.property == PropertyId::Nodes &&
        m_treeExtra < minimumTreeExtra()) {
        setTreeExtra(m_treeExtra);  // new captions (a language) may need more room
    }
}

void FormView::mirrorDatePart(const form::Control& control, const form::PropertyChange& change) {
    if (control.look() != form::Control::Look::DateDay &&
        control.look() != form::Control::Look::DateMonth) {
        return;
    }
    if (const form::Control* year = DatePartsOf(m_form, control).year) {
        if (const auto found = m_bindings.find(year); found != m_bindings.end()) {
            found->second->mirror(change.property, change.key, change.item);
        }
    }
}

void FormView::orderTabs() {
    for (const form::Control* page : m_form.controls()) {
        QWidget* pageWidget = widgetOf(*page);
        if (page->kind() != ControlKind::Frame || page->container() != nullptr ||
            pageWidget == nullptr) {
            continue;
        }
        std::vector<QWidget*> fields;
        for (QWidget* child : pageWidget->findChildren<QWidget*>()) {
            // A spin box (the date editor) takes the focus through its
            // line edit, which has no name of the form's.
            const bool proxied = child->focusProxy() != nullptr &&
                                 qobject_cast<QAbstractSpinBox*>(child) == nullptr;
            if ((child->focusPolicy() & Qt::TabFocus) != 0 && !proxied &&
                !child->objectName().isEmpty() && child->parentWidget() != nullptr &&
                child->objectName().startsWith(QLatin1String("qt_")) == false) {
                fields.push_back(child);
            }
        }
        const auto place = [pageWidget](QWidget* w) { return w->mapTo(pageWidget, QPoint(0, 0)); };
        std::stable_sort(fields.begin(), fields.end(), [&](QWidget* a, QWidget* b) {
            const QPoint pa = place(a);
            const QPoint pb = place(b);
            return pa.y() != pb.y() ? pa.y() < pb.y() : pa.x() < pb.x();
        });
        for (std::size_t i = 1; i < fields.size(); ++i) {
            QWidget::setTabOrder(fields[i - 1], fields[i]);
        }
    }
}

void FormView::setDeviceModel(const QString& typeId, const QString& modelName) {
    m_context.modelId = typeId;
    m_context.modelName = modelName;
    for (const auto& [control, binding] : m_bindings) {
        if (control->look() == form::Control::Look::Model && binding->widget() != nullptr) {
            const QSignalBlocker blocker(binding->widget());
            binding->mirror(PropertyId::Caption, {}, -1);
        }
    }
}

void FormView::setReservedMnemonics(const QString& letters) {
    m_reservedMnemonics = letters.toLower();
    assignMnemonics(nullptr);
    for (const form::Control* page : m_form.children(nullptr)) {
        if (page->kind() == ControlKind::Frame) {
            assignMnemonics(page);
        }
    }
}

void FormView::assignMnemonics(const form::Control* page) {
    // In form order, so the same page gives the same letters every time.
    QString taken = m_reservedMnemonics;
    for (const form::Control* control : m_form.controls()) {
        if (control->kind() != ControlKind::CommandButton || pageOf(*control) != page) {
            continue;
        }
        if (auto* button = qobject_cast<QPushButton*>(widgetOf(*control))) {
            const QSignalBlocker blocker(button);
            button->setText(WithMnemonic(Qs(control->caption()), taken));
        }
    }
}

void FormView::setHintSource(HintSource source) {
    m_hints = std::move(source);
    // Only the fields take hints; the others keep the tool tips they have.
    for (const auto& [control, binding] : m_bindings) {
        if (QWidget* widget = binding->widget();
            widget != nullptr && control->kind() == ControlKind::TextBox) {
            applyToolTip(*control, *widget);
        }
    }
}

void FormView::applyToolTip(const form::Control& control, QWidget& widget) {
    QString tip = control.has(PropertyId::ToolTipText)
                      ? QString::fromStdString(control.toolTipText())
                      : QString();
    if (m_hints && control.kind() == ControlKind::TextBox) {
        const QString hint = m_hints(control);
        if (!hint.isEmpty()) {
            tip = tip.isEmpty() ? hint : tip + QLatin1Char('\n') + hint;
        }
    }
    if (control.has(PropertyId::ToolTipText) || !tip.isEmpty()) {
        widget.setToolTip(tip);
    }
}

bool FormView::treeShown() const {
    return m_tree != nullptr && m_tree->visible();
}

QRect FormView::placed(const form::Control& control) const {
    if (DatePlaceOf(m_form, control) == DatePlace::AtDateMark) {
        // The mark of a day's or month's row stands at the date's mark.
        if (const form::Control* mark = DateMarkFor(m_form, control)) {
            return placed(*mark);
        }
    }
    // A chart is drawn in the free part of its page.
    QRect rect = control.kind() == form::ControlKind::Chart
                     ? m_scale.rect(FittedChartRect(m_form, control))
                     : m_scale.rect(control);
    if (control.container() != nullptr) {
        // Rows below a hidden row close up.
        rect.translate(0, -m_scale.pixels(RowGapShift(m_form, control)));
        return rect;
    }
    if (m_treeExtra == 0 || !treeShown()) {
        return rect;
    }
    const int edge = m_scale.rect(*m_tree).right() + 1;
    if (rect.left() >= edge) {
        rect.translate(m_treeExtra, 0);
    } else if (rect.right() + 1 >= edge) {
        rect.setWidth(rect.width() + m_treeExtra);
    }
    return rect;
}

int FormView::minimumTreeExtra() const {
    auto* tree = m_tree == nullptr ? nullptr : qobject_cast<QTreeWidget*>(widgetOf(*m_tree));
    if (tree == nullptr) {
        return 0;
    }
    // Every caption at its depth, collapsed ones too, beside its picture,
    // with room for the vertical scroll bar.
    const QFontMetrics metrics = tree->fontMetrics();
    int widest = 0;
    for (QTreeWidgetItemIterator it(tree); *it != nullptr; ++it) {
        int depth = 1;  // the root decoration
        for (const QTreeWidgetItem* up = (*it)->parent(); up != nullptr; up = up->parent()) {
            ++depth;
        }
        const int width = depth * tree->indentation() + tree->iconSize().width() +
                          metrics.horizontalAdvance((*it)->text(0)) + 3 * metrics.averageCharWidth();
        widest = std::max(widest, width);
    }
    widest += 2 * tree->frameWidth() + tree->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return std::clamp(widest - m_scale.rect(*m_tree).width(), 0, kMostTreeExtra);
}

void FormView::setTreeExtra(int pixels) {
    m_treeExtra = std::clamp(pixels, minimumTreeExtra(), std::max(kMostTreeExtra, minimumTreeExtra()));
    relayout();
}

void FormView::placeRows(const form::Control& page) {
    for (const form::Control* child : m_form.children(&page)) {
        if (QWidget* widget = widgetOf(*child)) {
            widget->setGeometry(placed(*child));
        }
    }
}

void FormView::placeCharts(const form::Control& container) {
    for (const form::Control* child : m_form.children(&container)) {
        if (child->kind() != form::ControlKind::Chart) {
            continue;
        }
        if (QWidget* widget = widgetOf(*child)) {
            widget->setGeometry(placed(*child));
        }
    }
}

void FormView::relayout() {
    const bool shown = treeShown();
    for (const auto& [control, binding] : m_bindings) {
        QWidget* widget = binding->widget();
        if (widget != nullptr && control->container() == nullptr) {
            widget->setGeometry(placed(*control));
        }
    }
    const int extra = shown ? m_treeExtra : 0;
    setFixedSize(m_scale.pixels(form::Form::kUserControlWidth) + extra,
                 m_scale.pixels(form::Form::kUserControlHeight));
    if (m_tree != nullptr && m_splitHandle != nullptr) {
        const QRect tree = placed(*m_tree);
        m_splitHandle->setGeometry(tree.right() + 1, tree.top(), m_scale.pixels(120),
                                   tree.height());
        m_splitHandle->setVisible(shown);
        m_splitHandle->raise();
    }
}

}  // namespace kt500::window
