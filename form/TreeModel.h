// The nodes of a tree view, by key. Nodes keep the order in which they were
// added; that order is the tree's overall order, and Index is 1-based in it
// as the navigation steps (node N.Index + 1 is the first child of a branch
// built root first). Every real change is reported through the sink.
#pragma once

#include "form/Property.h"

#include <string>
#include <string_view>
#include <vector>

namespace kt500::form {

struct TreeNode {
    std::string key;
    std::string text;
    std::string image;      // an image key ("read", "notRead", ...)
    std::string parentKey;  // "" for a root node
    std::string tag;
    bool expanded = false;
};

class TreeModel {
public:
    explicit TreeModel(std::string owner, ChangeSink sink = {});

    // Adds a node under parentKey ("" for a root). A key already present
    // throws std::invalid_argument, an unknown parent std::out_of_range.
    const TreeNode& add(std::string_view parentKey, std::string key, std::string text,
                        std::string image = {});
    // Removes a node with all its descendants.
    void remove(std::string_view key);
    void clear();

    [[nodiscard]] int count() const noexcept { return static_cast<int>(m_nodes.size()); }
    [[nodiscard]] const std::vector<TreeNode>& nodes() const noexcept { return m_nodes; }
    // Throws std::out_of_range naming the owner and the key.
    [[nodiscard]] const TreeNode& node(std::string_view key) const;
    [[nodiscard]] const TreeNode* find(std::string_view key) const noexcept;
    // 1-based position in the overall order; at() throws outside 1..count.
    [[nodiscard]] const TreeNode& at(int index) const;
    [[nodiscard]] int indexOf(std::string_view key) const;
    [[nodiscard]] std::vector<std::string> children(std::string_view key) const;
    [[nodiscard]] bool hasChildren(std::string_view key) const;

    void setText(std::string_view key, std::string text);
    void setImage(std::string_view key, std::string image);
    void setExpanded(std::string_view key, bool expanded);
    void setTag(std::string_view key, std::string tag);

    // The selected node's key, "" when none. select("") clears it.
    [[nodiscard]] const std::string& selectedKey() const noexcept { return m_selected; }
    void select(std::string_view key);

    // Script access to one node: Text, Image, Expanded, Selected, Tag,
    // Parent, Index, Children. Unknown names throw std::invalid_argument.
    [[nodiscard]] std::string property(std::string_view key, std::string_view name) const;
    void setProperty(std::string_view key, std::string_view name, std::string_view value);

private:
    TreeNode& mutableNode(std::string_view key);
    void changed(std::string_view key);

    std::string m_owner;
    ChangeSink m_sink;
    std::vector<TreeNode> m_nodes;
    std::string m_selected;
};

}  // namespace kt500::form
