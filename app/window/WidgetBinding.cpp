#include "app/window/WidgetBinding.h"

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

void WidgetBinding::applyColors(QWidget& widget, bool fieldGround) const {
    QPalette palette = widget.palette();
    const QColor text = ColorOf(m_control.foreColor());
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    if (m_control.has(form::PropertyId::BackColor)) {
        const std::uint32_t back = m_control.backColor();
        if (fieldGround) {
            palette.setColor(QPalette::Base, ColorOf(back));
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
