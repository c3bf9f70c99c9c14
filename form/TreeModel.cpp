#include "form/TreeModel.h"

#include <algorithm>
#include <stdexcept>

namespace kt500::form {

TreeModel::TreeModel(std::string owner, ChangeSink sink)
    : m_owner(std::move(owner)), m_sink(std::move(sink)) {}

void TreeModel::changed(std::string_view key) {
    if (m_sink) {
        m_sink(PropertyId::Nodes, key, -1);
    }
}

const TreeNode& TreeModel::add(std::string_view parentKey, std::string key, std::string text,
                               std::string image) {
    if (key.empty()) {
        throw std::invalid_argument(m_owner + ": a node needs a key");
    }
    if (find(key) != nullptr) {
        throw std::invalid_argument(m_owner + ": node key '" + key + "' is already in the tree");
    }
    if (!parentKey.empty() && find(parentKey) == nullptr) {
        throw std::out_of_range(m_owner + ": no parent node '" + std::string(parentKey) + "'");
    }
    m_nodes.push_back(
        TreeNode{key, std::move(text), std::move(image), std::string(parentKey), {}, false});
    changed(key);
    return m_nodes.back();
}

void TreeModel::remove(std::string_view key) {
    (void)node(key);
    std::vector<std::string> doomed{std::string(key)};
    // Nodes come after their parents, so one pass in order finds every descendant.
    for (const TreeNode& n : m_nodes) {
        if (std::find(doomed.begin(), doomed.end(), n.parentKey) != doomed.end()) {
            doomed.push_back(n.key);
        }
    }
    std::erase_if(m_nodes, [&](const TreeNode& n) {
        return std::find(doomed.begin(), doomed.end(), n.key) != doomed.end();
    });
    if (std::find(doomed.begin(), doomed.end(), m_selected) != doomed.end()) {
        m_selected.clear();
    }
    changed({});
}

void TreeModel::clear() {
    if (m_nodes.empty() && m_selected.empty()) {
        return;
    }
    m_nodes.clear();
    m_selected.clear();
    changed({});
}

const TreeNode* TreeModel::find(std::string_view key) const noexcept {
    const auto it = std::find_if(m_nodes.begin(), m_nodes.end(),
                                 [&](const TreeNode& n) { return n.key == key; });
    return it == m_nodes.end() ? nullptr : &*it;
}

const TreeNode& TreeModel::node(std::string_view key) const {
    if (const TreeNode* n = find(key)) {
        return *n;
    }
    throw std::out_of_range(m_owner + ": no node '" + std::string(key) + "'");
}

TreeNode& TreeModel::mutableNode(std::string_view key) {
    return const_cast<TreeNode&>(node(key));
}

const TreeNode& TreeModel::at(int index) const {
    if (index < 1 || index > count()) {
        throw std::out_of_range(m_owner + ": node index " + std::to_string(index) +
                                " is outside 1.." + std::to_string(count()));
    }
    return m_nodes[static_cast<std::size_t>(index - 1)];
}

int TreeModel::indexOf(std::string_view key) const {
    return static_cast<int>(&node(key) - m_nodes.data()) + 1;
}

std::vector<std::string> TreeModel::children(std::string_view key) const {
    (void)node(key);
    std::vector<std::string> keys;
    for (const TreeNode& n : m_nodes) {
        if (n.parentKey == key) {
            keys.push_back(n.key);
        }
    }
    return keys;
}

bool TreeModel::hasChildren(std::string_view key) const {
    (void)node(key);
    return std::any_of(m_nodes.begin(), m_nodes.end(),
                       [&](const TreeNode& n) { return n.parentKey == key; });
}

void TreeModel::setText(std::string_view key, std::string text) {
    TreeNode& n = mutableNode(key);
    if (n.text != text) {
        n.text = std::move(text);
        changed(key);
    }
}

void TreeModel::setImage(std::string_view key, std::string image) {
    TreeNode& n = mutableNode(key);
    if (n.image != image) {
        n.image = std::move(image);
        changed(key);
    }
}

void TreeModel::setExpanded(std::string_view key, bool expanded) {
    TreeNode& n = mutableNode(key);
    if (n.expanded != expanded) {
        n.expanded = expanded;
        changed(key);
    }
}

void TreeModel::setTag(std::string_view key, std::string tag) {
    TreeNode& n = mutableNode(key);
    if (n.tag != tag) {
        n.tag = std::move(tag);
        changed(key);
    }
}

void TreeModel::select(std::string_view key) {
    if (!key.empty()) {
        (void)node(key);
    }
    if (m_selected != key) {
        const std::string previous = m_selected;
        m_selected = std::string(key);
        if (!previous.empty()) {
            changed(previous);
        }
        if (!m_selected.empty()) {
            changed(m_selected);
        }
    }
}

std::string TreeModel::property(std::string_view key, std::string_view name) const {
    const TreeNode& n = node(key);
    const auto is = [&](std::string_view word) { return name == word; };
    if (is("Text")) {
        return n.text;
    }
    if (is("Image")) {
        return n.image;
    }
    if (is("Expanded")) {
        return formatBoolean(n.expanded);
    }
    if (is("Selected")) {
        return formatBoolean(m_selected == n.key);
    }
    if (is("Tag")) {
        return n.tag;
    }
    if (is("Parent")) {
        return n.parentKey;
    }
    if (is("Index")) {
        return std::to_string(indexOf(key));
    }
    if (is("Children")) {
        return std::to_string(children(key).size());
    }
    throw std::invalid_argument(m_owner + ": a node has no property '" + std::string(name) + "'");
}

void TreeModel::setProperty(std::string_view key, std::string_view name, std::string_view value) {
    const auto boolean = [&] {
        if (const auto b = parseBoolean(value)) {
            return *b;
        }
        throw std::invalid_argument(m_owner + ": node " + std::string(name) +
                                    " takes True or False, not '" + std::string(value) + "'");
    };
    if (name == "Text") {
        setText(key, std::string(value));
    } else if (name == "Image") {
        setImage(key, std::string(value));
    } else if (name == "Tag") {
        setTag(key, std::string(value));
    } else if (name == "Expanded") {
        setExpanded(key, boolean());
    } else if (name == "Selected") {
        if (boolean()) {
            select(key);
        } else if (m_selected == key) {
            select({});
        }
    } else {
        throw std::invalid_argument(m_owner + ": a node has no writable property '" +
                                    std::string(name) + "'");
    }
}

}  // namespace kt500::form
