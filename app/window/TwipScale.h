// The form measures in twips (1440 an inch); the screen in pixels. The scale
// follows the screen's logical resolution, so the control keeps its real
// size on every screen (96 dots an inch: 15 twips a pixel).
#pragma once

#include <QRect>

#include <cmath>

namespace kt500::form {
class Control;
struct Rect;
}

namespace kt500::window {

class TwipScale {
public:
    static constexpr double kTwipsPerInch = 1440.0;

    explicit TwipScale(double dotsPerInch = 96.0) : m_pixelsPerTwip(dotsPerInch / kTwipsPerInch) {}

    [[nodiscard]] int pixels(int twips) const {
        return static_cast<int>(std::lround(twips * m_pixelsPerTwip));
    }
    // The control's Left, Top, Width and Height in pixels.
    [[nodiscard]] QRect rect(const form::Control& control) const;
    // A rectangle in twips, in pixels.
    [[nodiscard]] QRect rect(const form::Rect& twips) const;

private:
    double m_pixelsPerTwip;
};

}  // namespace kt500::window
