// The product's pictures by image key: share/icons/<key>.svg, drawn by Qt
// SVG at the size asked for and kept once drawn. The tree states, the status
// states, the toolbar items, the field marks and the device pictures all
// come from here.
#pragma once

#include <QIcon>
#include <QPixmap>
#include <QSize>

#include <filesystem>
#include <map>
#include <string>

namespace kt500::window {

class IconStore {
public:
    explicit IconStore(std::filesystem::path iconDir);

    // Whether share/icons holds the key's picture.
    [[nodiscard]] bool has(const std::string& key) const;
    // The key's icon; an empty key or one without a picture gives a null icon.
    [[nodiscard]] QIcon icon(const std::string& key);
    // The picture drawn into size (logical pixels), its aspect kept, at the
    // application's device pixel ratio; null as icon().
    [[nodiscard]] QPixmap pixmap(const std::string& key, QSize size);
    // The same at the given device pixel ratio (2.0: twice the pixels).
    [[nodiscard]] QPixmap pixmap(const std::string& key, QSize size, double devicePixelRatio);

private:
    [[nodiscard]] std::filesystem::path fileOf(const std::string& key) const;

    std::filesystem::path m_iconDir;
    std::map<std::string, QIcon> m_icons;
};

}  // namespace kt500::window
