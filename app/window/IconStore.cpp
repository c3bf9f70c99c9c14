#include "app/window/IconStore.h"

#include <QPainter>
#include <QSvgRenderer>

namespace kt500::window {

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
        found = m_icons.emplace(key, QIcon(QString::fromStdString(fileOf(key).string()))).first;
    }
    return found->second;
}

QPixmap IconStore::pixmap(const std::string& key, QSize size) {
    if (!has(key) || size.isEmpty()) {
        return {};
    }
    QSvgRenderer renderer(QString::fromStdString(fileOf(key).string()));
    if (!renderer.isValid()) {
        return {};
    }
    const QSize drawn = renderer.defaultSize().scaled(size, Qt::KeepAspectRatio);
    QPixmap picture(drawn);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    renderer.render(&painter);
    return picture;
}

}  // namespace kt500::window
