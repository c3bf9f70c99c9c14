#include "app/window/WidgetBinding.h"

#include <QApplication>
#include <QPalette>

namespace kt500::window {

namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;

// Timers tick through the pump and menus open through their charts: no
// widget of their own.
class Invisible final : public WidgetBinding {
public:
    using WidgetBinding::WidgetBinding;
    [[nodiscard]] QWidget* widget() const override { return nullptr; }
    void mirror(form::PropertyId /*id*/, std::string_view /*key*/, int /*item*/) override {}
    void mirrorAll() override {}
};

}  // namespace

QColor ColorOf(std::uint32_t bgr) {
    return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                  static_cast<int>((bgr >> 16) & 0xFF));
}

void WidgetBinding::applyColors(QWidget& widget, bool fieldGround,
                                const form::Control& source) const {
    // The control's colours hold for the enabled states only: a disabled
    // field keeps the style's grey text and takes the window's ground, so
    // that it never looks editable, whatever colour the logic last set.
    const QPalette standard = QApplication::palette(&widget);
    QPalette palette = widget.palette();
    const QColor text = ColorOf(source.foreColor());
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::WindowText, text);
        palette.setColor(group, QPalette::Text, text);
        palette.setColor(group, QPalette::ButtonText, text);
    }
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, standard.color(QPalette::Disabled, role));
    }
    if (fieldGround) {
        palette.setColor(QPalette::Disabled, QPalette::Base,
                         standard.color(QPalette::Active, QPalette::Window));
    }
    if (source.has(form::PropertyId::BackColor)) {
        const std::uint32_t back = source.backColor();
        if (fieldGround) {
            palette.setColor(QPalette::Active, QPalette::Base, ColorOf(back));
            palette.setColor(QPalette::Inactive, QPalette::Base, ColorOf(back));
        } else if (back != kWhite) {
            palette.setColor(QPalette::Window, ColorOf(back));
            widget.setAutoFillBackground(true);
        } else {
            widget.setAutoFillBackground(false);
        }
    }
    widget.setPalette(palette);
}

std::unique_ptr<WidgetBinding> MakeBinding(form::Control& control, ViewContext& context,
                                           QWidget* parent) {
    if (parent != nullptr) {
        for (auto* make :
             {&MakeFieldBinding, &MakeItemViewBinding, &MakeToolbarBinding, &MakeChartBinding}) {
            if (auto binding = make(control, context, parent)) {
                return binding;
            }
        }
    }
    return std::make_unique<Invisible>(control, context);
}

}  // namespace kt500::window
