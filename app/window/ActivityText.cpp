#include "app/window/ActivityText.h"

#include <algorithm>
#include <cmath>

namespace kt500::window {

namespace {

int Percent(const Activity& activity) {
    const double span = activity.progressMax - activity.progressMin;
    if (span <= 0.0) {
        return 0;
    }
    const double share = (activity.progressValue - activity.progressMin) / span;
    return static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * 100.0));
}

}  // namespace

QString ActivityText(const Activity& activity, const FrameTexts& texts) {
    const QString what = QString::fromStdString(activity.progressText);
    QString text;
    switch (activity.autoAction) {
        case 1:
            text = texts.text(FrameText::CalibrationRunning);
            break;
        case 2:
            text = texts.text(FrameText::TestRunning);
            break;
        case 3:
            text = texts.text(FrameText::ReadingDataFile);
            break;
        case 4:
            text = texts.text(FrameText::ReadingResults);
            break;
        default:
            break;
    }
    if (!text.isEmpty()) {
        return what.isEmpty() ? text : text + QStringLiteral(": ") + what;
    }
    if (activity.writing) {
        return texts.text(FrameText::Writing).arg(what).trimmed();
    }
    if (activity.reading || activity.progressShown) {
        return texts.text(FrameText::Reading).arg(what).arg(Percent(activity)).simplified();
    }
    if (activity.monitoring) {
        return texts.text(FrameText::Monitoring);
    }
    return texts.text(FrameText::Ready);
}

QString SessionModeText(const Activity& activity, const FrameTexts& texts) {
    return texts.text(activity.online ? FrameText::Online : FrameText::Offline) +
           QStringLiteral(" \u00b7 ") +
           texts.text(FrameText::Role).arg(texts.roleName(activity.role));
}

}  // namespace kt500::window
