#include "app/window/ParameterHint.h"

#include <QStringList>

namespace kt500::window {

namespace {

bool HasUnit(const std::string& unit) {
    return !unit.empty() && unit != "noUnit";
}

QString Q(const std::string& text) {
    return QString::fromStdString(text);
}

}  // namespace

QString ParameterHint(const ParameterFacts& facts, const FrameTexts& texts) {
    QStringList lines;
    if (facts.type == "stringVal") {
        if (!facts.maxVal.empty()) {
            lines << texts.text(FrameText::MaxLength).arg(Q(facts.maxVal));
        }
        return lines.join(QLatin1Char('\n'));
    }
    if (!facts.minVal.empty() && !facts.maxVal.empty()) {
        QString range = texts.text(FrameText::Range).arg(Q(facts.minVal), Q(facts.maxVal));
        if (HasUnit(facts.unit)) {
            range += QLatin1Char(' ') + Q(facts.unit);
        }
        lines << range;
    }
    const std::string& shown = HasUnit(facts.pageUnit) ? facts.pageUnit : facts.unit;
    if (HasUnit(shown) && (lines.isEmpty() || shown != facts.unit)) {
        lines << texts.text(FrameText::Unit).arg(Q(shown));
    }
    if (!facts.decimals.empty() && facts.type == "floatVal") {
        lines << texts.text(FrameText::Decimals).arg(Q(facts.decimals));
    }
    return lines.join(QLatin1Char('\n'));
}

}  // namespace kt500::window
