#include "app/window/IconStore.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace kt500::window {

namespace {

QPixmap Faded(const QPixmap& picture) {
    QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grey = qGray(line[x]);
            line[x] = qRgba(grey, grey, grey, qAlpha(line[x]) * 2 / 5);
        }
    }
    QPixmap faded = QPixmap::fromImage(image);
    faded.setDevicePixelRatio(picture.devicePixelRatio());
    return faded;
}

}  // namespace

IconStore::IconStore(std::filesystem::path iconDir) : m_iconDir(std::move(iconDir)) {}

std::filesystem::path IconStore::fileOf(const std::string& key) const {
    return m_iconDir / (key + ".svg");
}

bool IconStore::has(const std::string& key) const {
    std::error_code error;
    return !key.empty() && key.find_first_of("/\\") == std::string::npos &&
           std::filesystem::is_regular_file(fileOf(key), error);
}

QIcon IconStore::icon(const std::string& key) {
    if (!has(key)) {
        return {};
    }
    auto found = m_icons.find(key);
    if (found == m_icons.end()) {
        // A disabled command shows its picture in grey and faint, so that a
        // red or blue sign never looks ready to press.
        QIcon icon;
        for (const int side : {16, 20, 24, 32, 48}) {
            const QPixmap normal = pixmap(key, QSize(side, side), 1.0);
            icon.addPixmap(normal, QIcon::Normal);
            // A selected tree row shows its state picture untinted, so
            // that "notRead" stays as visible as on any other row.
            icon.addPixmap(normal, QIcon::Selected);
            icon.addPixmap(Faded(normal), QIcon::Disabled);
        }
        found = m_icons.emplace(key, icon).first;
    }
    return found->second;
}

QPixmap IconStore::pixmap(const std::string& key, QSize size) {
    return pixmap(key, size, qGuiApp != nullptr ? qGuiApp->devicePixelRatio() : 1.0);
}

QPixmap IconStore::pixmap(const std::string& key, QSize size, double devicePixelRatio) {
    if (!has(key) || size.isEmpty()) {
        return {};
    }
    QSvgRenderer renderer(QString::fromStdString(fileOf(key).string()));
    if (!renderer.isValid()) {
        return {};
    }
    // Drawn with as many device pixels as the screen has for the size, so
    // that the picture stays sharp at 150 % and 200 %.
    const double ratio = devicePixelRatio > 0.0 ? devicePixelRatio : 1.0;
    const QSize drawn = renderer.defaultSize().scaled(size, Qt::KeepAspectRatio) * ratio;
    QPixmap picture(drawn);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    renderer.render(&painter);
    painter.end();
    picture.setDevicePixelRatio(ratio);
    return picture;
}

}  // namespace kt500::window
