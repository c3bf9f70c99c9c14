// The widgets of the simple kinds: text boxes, list boxes, check boxes,
// options, labels, pictures, command buttons, frames, progress bars and the
// folder and file lists.
#include "app/window/WidgetBinding.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFocusEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace kt500::window {

namespace {

using form::ControlKind;
using form::PropertyId;

// The key code of a key press as the form's KeyPress handlers take it: the
// character, or Enter 13, Backspace 8, Escape 27; 0 for keys that raise no
// KeyPress (arrows, Tab, function keys).
int KeyAsciiOf(const QKeyEvent& key) {
    switch (key.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return 13;
        case Qt::Key_Backspace:
            return 8;
        case Qt::Key_Escape:
            return 27;
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            return 0;
        default:
            break;
    }
    const QString text = key.text();
    if (text.size() != 1 || !text.front().isPrint()) {
        return 0;
    }
    const char16_t code = text.front().unicode();
    return code < 256 ? code : 0;
}

// Raises GotFocus, LostFocus, KeyPress and Click of a control from its
// widget's events. A focus change that only a message box or a popup
// caused is not the user's and raises nothing.
class EventRelay final : public QObject {
public:
    EventRelay(form::Control& control, ViewContext& context, bool keys, bool clicks)
        : m_control(control), m_context(context), m_keys(keys), m_clicks(clicks) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        form::Form& form = m_context.form;
        form::Control& control = m_control;
        switch (event->type()) {
            case QEvent::FocusIn:
            case QEvent::FocusOut: {
                const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
                if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) {
                    break;
                }
                const bool in = event->type() == QEvent::FocusIn;
                m_context.gate.run([&form, &control, in] {
                    in ? form.raiseGotFocus(control) : form.raiseLostFocus(control);
                });
                break;
            }
            case QEvent::KeyPress: {
                const int ascii = m_keys ? KeyAsciiOf(*static_cast<QKeyEvent*>(event)) : 0;
                if (ascii != 0 && !m_context.gate.busy()) {
                    int after = ascii;
                    m_context.gate.run([&form, &control, ascii, &after] {
                        after = form.raiseKeyPress(control, ascii);
                    });
                    if (after == 0) {
                        return true;  // the handler swallowed the key
                    }
                }
                break;
            }
            case QEvent::MouseButtonRelease:
                if (m_clicks && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
                    m_context.gate.run([&form, &control] { form.raiseClick(control); });
                }
                break;
            default:
                break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    form::Control& m_control;
    ViewContext& m_context;
    bool m_keys;
    bool m_clicks;
};

// The common shape of a binding that owns one widget of type W.
template <typename W>
class Bound : public WidgetBinding {
public:
    Bound(form::Control& control, ViewContext& context, QWidget* parent)
        : WidgetBinding(control, context), m_widget(new W(parent)) {
        m_widget->setObjectName(Qs(control.displayName()));
    }
    [[nodiscard]] QWidget* widget() const override { return m_widget; }

protected:
    void relay(bool keys, bool clicks) {
        auto* relay = new EventRelay(m_control, m_context, keys, clicks);
        relay->setParent(m_widget);
        m_widget->installEventFilter(relay);
    }
    W* m_widget;
};

class TextBox final : public Bound<QLineEdit> {
public:
    TextBox(form::Control& control, ViewContext& context, QWidget* parent)
        : Bound(control, context, parent) {
        relay(true, false);
        QObject::connect(m_widget, &QLineEdit::textEdited, m_widget, [this](const QString& text) {
            deliver([this, value = text.toStdString()] { m_control.setText(value); });
        });
    }
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::Text && m_widget->text() != Qs(m_control.text())) {
            m_widget->setText(Qs(m_control.text()));
        } else if (id == PropertyId::ForeColor || id == PropertyId::BackColor) {
            applyColors(*m_widget, true);
        }
    }
    void mirrorAll() override {
        mirror(PropertyId::Text, {}, -1);
        applyColors(*m_widget, true);
    }
};

class ComboBox final : public Bound<QComboBox> {
public:
    ComboBox(form::Control& control, ViewContext& context, QWidget* parent)
        : Bound(control, context, parent) {
        relay(true, false);
        QObject::connect(m_widget, &QComboBox::activated, m_widget, [this](int index) {
            deliver([this, index] {
                if (index < m_control.listCount()) {
                    m_control.setListIndex(index);
                }
            });
        });
    }
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        switch (id) {
            case PropertyId::List:
            case PropertyId::ListCount:
            case PropertyId::ItemData:
            case PropertyId::ListIndex:
            case PropertyId::Text:
                mirrorEntries();
                break;
            case PropertyId::ForeColor:
            case PropertyId::BackColor:
                applyColors(*m_widget, true);
                break;
            default:
                break;
        }
    }
    void mirrorAll() override {
        mirrorEntries();
        applyColors(*m_widget, true);
    }

private:
    void mirrorEntries() {
        const int count = m_control.listCount();
        bool same = m_widget->count() == count;
        for (int i = 0; same && i < count; ++i) {
            same = m_widget->itemText(i) == Qs(m_control.list(i));
        }
        if (!same) {
            m_widget->clear();
            for (int i = 0; i < count; ++i) {
                m_widget->addItem(Qs(m_control.list(i)));
            }
        }
        m_widget->setCurrentIndex(m_control.listIndex());
    }
};

// A list box of an off entry (item data 0) and an on entry (item data 1),
// drawn as a check box with the entry's text. A click chooses the other
// entry as choosing it in the list would: GotFocus, ListIndex (Click),
// and LostFocus when the focus leaves.
class SwitchBox final : public Bound<QCheckBox> {
public:
    SwitchBox(form::Control& control, ViewContext& context, QWidget* parent)
        : Bound(control, context, parent) {
        relay(true, false);
        QObject::connect(m_widget, &QAbstractButton::clicked, m_widget, [this](bool checked) {
            deliver([this, checked] {
                const int entry = entryOf(checked ? 1 : 0);
                if (entry >= 0) {
                    m_control.setListIndex(entry);
                }
            });
            mirrorAll();  // the handler may have refused the change
        });
    }
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        switch (id) {
            case PropertyId::List:
            case PropertyId::ListCount:
            case PropertyId::ItemData:
            case PropertyId::ListIndex:
            case PropertyId::Text: {
                const int index = m_control.listIndex();
                const bool on = index >= 0 && m_control.itemData(index) == 1;
                m_widget->setChecked(on);
                m_widget->setText(index >= 0 ? Qs(m_control.list(index)) : QString());
                break;
            }
            case PropertyId::ForeColor:
                applyColors(*m_widget, false);
                break;
            default:
                break;
        }
    }
    void mirrorAll() override {
        mirror(PropertyId::ListIndex, {}, -1);
        applyColors(*m_widget, false);
    }

private:
    [[nodiscard]] int entryOf(std::int32_t itemData) const {
        for (int i = 0; i < m_control.listCount(); ++i) {
            if (m_control.itemData(i) == itemData) {
                return i;
            }
        }
        return -1;
    }
};

// Check boxes and option buttons: the caption, and Value as the mark (a
// check box shows 2 greyed). A click writes Value, which raises Click; the
// form clears the other options of the container itself.
template <typename W>
class Choice final : public Bound<W> {
    static constexpr bool kOption = std::is_same_v<W, QRadioButton>;

public:
    Choice(form::Control& control, ViewContext& context, QWidget* parent)
        : Bound<W>(control, context, parent) {
        if constexpr (kOption) {
            this->m_widget->setAutoExclusive(false);
        }
        this->relay(false, false);
        QObject::connect(this->m_widget, &QAbstractButton::clicked, this->m_widget,
                         [this](bool checked) {
                             const double value = kOption || checked ? 1 : 0;
                             this->deliver([this, value] { this->m_control.setValue(value); });
                             mirrorAll();  // the handler may have refused the change
                         });
    }
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::Value) {
            const int value = static_cast<int>(this->m_control.value());
            if constexpr (kOption) {
                this->m_widget->setChecked(value != 0);
            } else {
                this->m_widget->setCheckState(value == 1   ? Qt::Checked
                                              : value == 2 ? Qt::PartiallyChecked
                                                           : Qt::Unchecked);
            }
        } else if (id == PropertyId::Caption) {
            this->m_widget->setText(Qs(this->m_control.caption()));
        } else if (id == PropertyId::ForeColor) {
            this->applyColors(*this->m_widget, false);
        }
    }
    void mirrorAll() override {
        mirror(PropertyId::Value, {}, -1);
        mirror(PropertyId::Caption, {}, -1);
        this->applyColors(*this->m_widget, false);
    }
};

class Label final : public Bound<QLabel> {
public:
    Label(form::Control& control, ViewContext& context, QWidget* parent)
        : Bound(control, context, parent) {
        relay(false, true);
        // A label taller than a row is a paragraph; a row's label sits
        // centred on the row.
        constexpr int kRowTwips = 400;
        if (control.height() > kRowTwips) {
            m_widget->setWordWrap(true);
            m_widget->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        } else {
            m_widget->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        }
    }
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::Caption) {
            m_widget->setText(shownCaption());
            if (m_control.name() == "lblTimeStamp") {
                showTimeStamp();
            }
        } else if (id == PropertyId::BorderStyle) {
            const bool border = m_control.borderStyle() != 0;
            m_widget->setFrameStyle(border ? QFrame::Panel | QFrame::Sunken : QFrame::NoFrame);
            m_widget->setMargin(border ? 2 : 0);
        } else if (id == PropertyId::ForeColor || id == PropertyId::BackColor) {
            applyColors(*m_widget, false);
        }
    }
    void mirrorAll() override {
        mirror(PropertyId::Caption, {}, -1);
        mirror(PropertyId::BorderStyle, {}, -1);
        applyColors(*m_widget, false);
    }

private:
    // The caption as the label shows it: a count grouped, the device's type
    // number as its model name (the number stays in the tool tip).
    QString shownCaption() {
        const QString caption = Qs(m_control.caption());
        switch (m_control.look()) {
            case form::Control::Look::Grouped:
                return GroupedDigits(caption);
            case form::Control::Look::Model:
                if (!m_context.modelName.isEmpty() && !caption.isEmpty() &&
                    caption == m_context.modelId) {
                    m_widget->setToolTip(caption);
                    return m_context.modelName;
                }
                m_widget->setToolTip({});
                return caption;
            default:
                return caption;
        }
    }
    // A page's time stamp says what it is where its label has the room,
    // and always in its tool tip.
    void showTimeStamp() {
        const QString time = Qs(m_control.caption());
        if (time.isEmpty()) {
            m_widget->setToolTip({});
            return;
        }
        const QString said = m_context.timeStampFormat.arg(time);
        m_widget->setToolTip(said);
        if (m_widget->fontMetrics().horizontalAdvance(said) <= m_widget->contentsRect().width()) {
            m_widget->setText(said);
        }
    }
};

class Image final : public Bound<QLabel> {
public:
    Image(form::Control& control, ViewContext& context, QWidget* parent)
        : Bound(control, context, parent) {
        relay(false, true);
        m_widget->setAlignment(Qt::AlignCenter);
    }
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::Picture || id == PropertyId::Width || id == PropertyId::Height) {
            m_widget->setPixmap(m_context.icons.pixmap(m_control.picture(),
                                                       m_context.scale.rect(m_control).size()));
        }
    }
    void mirrorAll() override { mirror(PropertyId::Picture, {}, -1); }
};

class CommandButton final : public Bound<QPushButton> {
public:
    CommandButton(form::Control& control, ViewContext& context, QWidget* parent)
        : Bound(control, context, parent) {
        relay(false, false);
        QObject::connect(m_widget, &QPushButton::clicked, m_widget,
                         [this] { deliver([this] { m_context.form.raiseClick(m_control); }); });
    }
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::Caption) {
            m_widget->setText(Qs(m_control.caption()));
        } else if (id == PropertyId::Picture) {
            m_widget->setIcon(m_context.icons.icon(m_control.picture()));
        }
    }
    void mirrorAll() override {
        mirror(PropertyId::Caption, {}, -1);
        mirror(PropertyId::Picture, {}, -1);
    }
};

class Frame final : public Bound<QGroupBox> {
public:
    using Bound::Bound;
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::Caption) {
            m_widget->setTitle(Qs(m_control.caption()));
        }
    }
    void mirrorAll() override { mirror(PropertyId::Caption, {}, -1); }
};

class ProgressBar final : public Bound<QProgressBar> {
public:
    ProgressBar(form::Control& control, ViewContext& context, QWidget* parent)
        : Bound(control, context, parent) {
        m_widget->setTextVisible(false);
    }
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::Min || id == PropertyId::Max || id == PropertyId::Value) {
            m_widget->setRange(static_cast<int>(std::lround(m_control.min())),
                               static_cast<int>(std::lround(m_control.max())));
            m_widget->setValue(static_cast<int>(std::lround(m_control.value())));
        }
    }
    void mirrorAll() override { mirror(PropertyId::Value, {}, -1); }
};

// The drive list shows the root of the file system; the data file pages
// choose folders and files below it.
class DriveList final : public Bound<QComboBox> {
public:
    using Bound::Bound;
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::Drive) {
            m_widget->clear();
            m_widget->addItem(m_control.drive().empty() ? QDir::rootPath() : Qs(m_control.drive()));
        }
    }
    void mirrorAll() override { mirror(PropertyId::Drive, {}, -1); }
};

// The folders under Path; a double click opens one (Path, then Change).
class DirList final : public Bound<QListWidget> {
public:
    DirList(form::Control& control, ViewContext& context, QWidget* parent)
        : Bound(control, context, parent) {
        QObject::connect(
            m_widget, &QListWidget::itemDoubleClicked, m_widget, [this](QListWidgetItem* item) {
                const QString folder = QDir(Qs(m_control.path())).absoluteFilePath(item->text());
                deliver([this, path = QDir::cleanPath(folder).toStdString()] {
                    m_control.setPath(path);
                    m_context.form.raiseChange(m_control);
                });
            });
    }
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::Path) {
            m_widget->clear();
            const QDir folder(Qs(m_control.path()));
            m_widget->addItem(QStringLiteral(".."));
            m_widget->addItems(folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name));
        }
    }
    void mirrorAll() override { mirror(PropertyId::Path, {}, -1); }
};

// The files under Path that match Pattern; a click names one (FileName,
// then Click), a double click opens it.
class FileList final : public Bound<QListWidget> {
public:
    FileList(form::Control& control, ViewContext& context, QWidget* parent)
        : Bound(control, context, parent) {
        QObject::connect(m_widget, &QListWidget::itemClicked, m_widget,
                         [this](QListWidgetItem* item) {
                             deliver([this, name = item->text().toStdString()] {
                                 m_control.setFileName(name);
                                 m_context.form.raiseClick(m_control);
                             });
                         });
        QObject::connect(m_widget, &QListWidget::itemDoubleClicked, m_widget,
                         [this](QListWidgetItem* /*item*/) {
                             deliver([this] { m_context.form.raiseDblClick(m_control); });
                         });
    }
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::Path || id == PropertyId::Pattern) {
            m_widget->clear();
            const QDir folder(Qs(m_control.path()));
            const QStringList patterns =
                Qs(m_control.pattern().empty() ? "*" : m_control.pattern()).split(u';');
            m_widget->addItems(folder.entryList(patterns, QDir::Files, QDir::Name));
        }
    }
    void mirrorAll() override { mirror(PropertyId::Path, {}, -1); }
};

}  // namespace

QString GroupedDigits(const QString& text) {
    const bool negative = text.startsWith(u'-');
    const QString digits = negative ? text.mid(1) : text;
    if (digits.isEmpty() ||
        !std::all_of(digits.begin(), digits.end(), [](QChar c) { return c.isDigit(); })) {
        return text;
    }
    QString grouped;
    for (qsizetype i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) {
            grouped += QChar(0x202F);
        }
        grouped += digits[i];
    }
    return negative ? u'-' + grouped : grouped;
}

std::unique_ptr<WidgetBinding> MakeFieldBinding(form::Control& control, ViewContext& context,
                                                QWidget* parent) {
    switch (control.kind()) {
        case ControlKind::TextBox:
            if (control.look() == form::Control::Look::Date) {
                return MakeDateEditBinding(control, context, parent);
            }
            return std::make_unique<TextBox>(control, context, parent);
        case ControlKind::ComboBox:
            // The day and month lists of the device date have no widget:
            // the date editor of the year's row draws them.
            if (control.look() == form::Control::Look::DateDay ||
                control.look() == form::Control::Look::DateMonth) {
                return nullptr;
            }
            if (control.look() == form::Control::Look::Switch) {
                return std::make_unique<SwitchBox>(control, context, parent);
            }
            return std::make_unique<ComboBox>(control, context, parent);
        case ControlKind::CheckBox:
            return std::make_unique<Choice<QCheckBox>>(control, context, parent);
        case ControlKind::OptionButton:
            return std::make_unique<Choice<QRadioButton>>(control, context, parent);
        case ControlKind::Label:
            return std::make_unique<Label>(control, context, parent);
        case ControlKind::Image:
            return std::make_unique<Image>(control, context, parent);
        case ControlKind::CommandButton:
            return std::make_unique<CommandButton>(control, context, parent);
        case ControlKind::Frame:
            return std::make_unique<Frame>(control, context, parent);
        case ControlKind::ProgressBar:
            return std::make_unique<ProgressBar>(control, context, parent);
        case ControlKind::DriveList:
            return std::make_unique<DriveList>(control, context, parent);
        case ControlKind::DirList:
            return std::make_unique<DirList>(control, context, parent);
        case ControlKind::FileList:
            // The file page's list is a file chooser; other file lists stay lists.
            if (control.name() == "filOpenFile") {
                return MakeFileChooserBinding(control, context, parent);
            }
            return std::make_unique<FileList>(control, context, parent);
        default:
            return nullptr;
    }
}

}  // namespace kt500::window
