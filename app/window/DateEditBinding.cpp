// The device date as one date editor in the year's row. It shows the date
// that the day list, the month list and the year box hold, and an edit of
// it reaches the logic as the user's own edits of those controls would:
// each control that changes takes the focus, its new entry or text, and
// loses the focus again, so change tracking, the value check and the
// confirmation list work as for the three controls. Only dates a device
// holds can be entered.
#include "app/window/DateRows.h"
#include "app/window/WidgetBinding.h"
#include "devices/IUserControl.h"

#include <QDateEdit>
#include <QSignalBlocker>

namespace kt500::window {

namespace {

using form::PropertyId;

// Shown while the controls hold no date a device can take.
const QString kNoDate = QStringLiteral("--.--.----");

class DateEdit final : public WidgetBinding {
public:
    DateEdit(form::Control& year, ViewContext& context, QWidget* parent)
        : WidgetBinding(year, context), m_widget(new QDateEdit(parent)) {
        m_widget->setObjectName(Qs(year.displayName()));
        m_widget->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
        m_widget->setCalendarPopup(true);
        // A typed date counts when the editing ends, not at every digit.
        m_widget->setKeyboardTracking(false);
        // The day before the first date stands for "no date".
        m_widget->setDateRange(FirstDeviceDate().addDays(-1), LastDeviceDate());
        m_widget->setSpecialValueText(kNoDate);
        QObject::connect(m_widget, &QDateEdit::dateChanged, m_widget,
                         [this](const QDate& date) { enter(date); });
    }

    [[nodiscard]] QWidget* widget() const override { return m_widget; }

    // Any change of the day, month or year (their entries, their colours)
    // is drawn anew.
    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        switch (id) {
            case PropertyId::Text:
            case PropertyId::ListIndex:
            case PropertyId::List:
            case PropertyId::ListCount:
            case PropertyId::ForeColor:
            case PropertyId::BackColor:
                mirrorAll();
                break;
            default:
                break;
        }
    }

    void mirrorAll() override {
        const DateParts parts = DatePartsOf(m_context.form, m_control);
        const QDate date = DateOf(parts);
        const QSignalBlocker blocker(m_widget);
        m_widget->setDate(date.isValid() ? date : m_widget->minimumDate());
        applyColors(*m_widget, true, colourSource(parts));
    }

private:
    // A refused part shows red, else a changed part blue, else the year's
    // colours.
    [[nodiscard]] const form::Control& colourSource(const DateParts& parts) const {
        for (const std::uint32_t colour : {devices::ColorRefused, devices::ColorChanged}) {
            for (const form::Control* part : {parts.year, parts.day, parts.month}) {
                if (part != nullptr && part->foreColor() == colour) {
                    return *part;
                }
            }
        }
        return m_control;
    }

    void enter(const QDate& date) {
        if (!date.isValid() || date < FirstDeviceDate() || date > LastDeviceDate()) {
            mirrorAll();  // "no date" takes nothing back into the controls
            return;
        }
        deliver([this, date] {
            const DateParts parts = DatePartsOf(m_context.form, m_control);
            if (parts.day == nullptr || parts.month == nullptr || parts.year == nullptr) {
                return;
            }
            const DateEntries entries = EntriesOf(date);
            choose(*parts.day, entries.dayIndex);
            choose(*parts.month, entries.monthIndex);
            type(*parts.year, entries.year);
        });
        mirrorAll();  // the logic may have refused a part
    }

    // The user's choice of an entry in a list: GotFocus, the entry (Click),
    // LostFocus. An entry the list holds already is left alone.
    void choose(form::Control& list, int index) {
        if (list.listIndex() == index || index >= list.listCount()) {
            return;
        }
        form::Form& form = m_context.form;
        form.raiseGotFocus(list);
        list.setListIndex(index);
        form.raiseLostFocus(list);
    }

    // The user's typing into the year box: GotFocus, a key, the text
    // (Change), LostFocus, where the logic checks the whole date.
    void type(form::Control& box, const std::string& text) {
        if (box.text() == text) {
            return;
        }
        form::Form& form = m_context.form;
        form.raiseGotFocus(box);
        if (form.raiseKeyPress(box, static_cast<unsigned char>(text.front())) != 0) {
            box.setText(text);
        }
        form.raiseLostFocus(box);
    }

    QDateEdit* m_widget;
};

}  // namespace

std::unique_ptr<WidgetBinding> MakeDateEditBinding(form::Control& control, ViewContext& context,
                                                   QWidget* parent) {
    return std::make_unique<DateEdit>(control, context, parent);
}

}  // namespace kt500::window
