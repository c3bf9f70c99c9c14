#include "form/FormLoader.h"

#include "form/RowLayout.h"
#include "xml/Document.h"
#include "xml/FileText.h"
#include "xml/SchemaCollection.h"

#include <libxml/tree.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace kt500::form {

FormLoadError::FormLoadError(std::string file, long line, const std::string& reason)
    : std::runtime_error(xml::Located(file, line, reason)),
      m_file(std::move(file)),
      m_line(line),
      m_reason(reason) {}

struct FormLoader::Impl {
    xml::SchemaCollection schemas;
};

namespace {

long lineOf(const xml::Node& node) {
    return node ? xmlGetLineNo(node.raw()) : 0;
}

// The first "line N" in a parser's message, 0 when it names none.
long lineInMessage(const std::string& message) {
    const auto at = message.find("line ");
    if (at == std::string::npos) {
        return 0;
    }
    long line = 0;
    for (std::size_t i = at + 5;
         i < message.size() && std::isdigit(static_cast<unsigned char>(message[i])); ++i) {
        line = line * 10 + (message[i] - '0');
        if (line > 100000000) {
            break;
        }
    }
    return line;
}

std::string imagePrefixOf(std::string_view family) {
    if (family == "KT520") {
        return "imgHA";
    }
    if (family == "KT540") {
        return "imgPA";
    }
    if (family == "PL500") {
        return "imgPL";
    }
    return "img";
}

// "fraCommon(0)" or "treeNavigation".
std::pair<std::string, int> parseRef(std::string_view ref) {
    const auto open = ref.find('(');
    if (open == std::string_view::npos) {
        return {std::string(ref), -1};
    }
    const auto number = parseNumber(ref.substr(open + 1, ref.size() - open - 2));
    return {std::string(ref.substr(0, open)), number ? static_cast<int>(*number) : -1};
}

std::string refText(const std::string& name, int index) {
    return index < 0 ? name : name + "(" + std::to_string(index) + ")";
}

// "txtHAOperationUnit" less its kind prefix: "HAOperationUnit".
std::string baseName(const std::string& name) {
    std::size_t i = 0;
    while (i < name.size() && std::islower(static_cast<unsigned char>(name[i]))) {
        ++i;
    }
    return name.substr(i);
}

enum class Role { Declared, RowLabel, RowField, RowUnit, RowMark };

// A control read from the file, checked before anything joins the form.
struct Pending {
    ControlKind kind = ControlKind::Label;
    std::string name;
    int index = -1;
    Role role = Role::Declared;
    xml::Node node;  // <control> or <row>
    long line = 0;
    int containerPending = -1;
    Control* containerExisting = nullptr;
    Rect geometry;
    std::string captionKey;  // a row's unit label: its unit, which is its caption
    std::string tag;
};

class Reader {
public:
    Reader(Form& form, std::string file) : m_form(form), m_file(std::move(file)) {}

    std::vector<Pending> read(const xml::Node& root) {
        m_imagePrefix = imagePrefixOf(root.attribute("family"));
        collect(root, -1);
        return std::move(m_pending);
    }

private:
    [[noreturn]] void fail(const xml::Node& node, const std::string& reason) const {
        throw FormLoadError(m_file, lineOf(node), reason);
    }

    int addPending(Pending p) {
        const std::string ref = refText(p.name, p.index);
        if (m_form.find(p.name, p.index) != nullptr || !m_seen.insert({p.name, p.index}).second) {
            fail(p.node, "control " + ref + " is declared twice");
        }
        const bool isArray = p.index >= 0;
        const ControlArray* existing = m_form.findArray(p.name);
        const auto known = m_arrayness.find(p.name);
        if ((existing != nullptr && existing->isArray() != isArray) ||
            (known != m_arrayness.end() && known->second != isArray)) {
            fail(p.node,
                 ref + ": " + p.name + " is used both as a control array and as a plain control");
        }
        m_arrayness.emplace(p.name, isArray);
        m_pending.push_back(std::move(p));
        return static_cast<int>(m_pending.size()) - 1;
    }

    ControlKind kindOf(const xml::Node& node, const std::string& word) const {
        const auto kind = kindFromWord(word);
        if (!kind) {
            fail(node, "unknown control kind '" + word + "'");
        }
        return *kind;
    }

    int indexOf(const xml::Node& node) const {
        const auto text = node.findAttribute("index");
        return text ? static_cast<int>(parseNumber(*text).value_or(-1)) : -1;
    }

    void collect(const xml::Node& parent, int parentPending) {
        for (const xml::Node& child : parent.childElements()) {
            const std::string element = child.name();
            if (element == "control") {
                collectControl(child, parentPending);
            } else if (element == "rows") {
                collectRows(child, parentPending);
            } else {
                checkFits(child, element, parentPending);
            }
        }
    }

    // Entries, columns, nodes, bands and properties belong to one kind each.
    void checkFits(const xml::Node& node, const std::string& element, int parentPending) const {
        if (parentPending < 0) {
            fail(node, "<" + element + "> must lie inside a control");
        }
        const ControlKind kind = m_pending[static_cast<std::size_t>(parentPending)].kind;
        const std::map<std::string, ControlKind> owner{{"entry", ControlKind::ComboBox},
                                                       {"column", ControlKind::ListView},
                                                       {"node", ControlKind::TreeView},
                                                       {"band", ControlKind::Toolbar}};
        const auto it = owner.find(element);
        if (it != owner.end() && it->second != kind) {
            fail(node, "a control of kind '" + std::string(kindWord(kind)) + "' cannot hold <" +
                           element + ">");
        }
    }

    void collectControl(const xml::Node& node, int parentPending) {
        Pending p;
        p.node = node;
        p.line = lineOf(node);
        p.kind = kindOf(node, node.attribute("kind"));
        p.name = node.attribute("name");
        p.index = indexOf(node);
        p.containerPending = parentPending;
        if (parentPending >= 0) {
            const ControlKind parentKind = m_pending[static_cast<std::size_t>(parentPending)].kind;
            if (parentKind != ControlKind::Frame && parentKind != ControlKind::Menu) {
                fail(node, "a control of kind '" + std::string(kindWord(parentKind)) +
                               "' cannot contain controls");
            }
            if (node.hasAttribute("container")) {
                fail(node, "a control written inside another takes no container attribute");
            }
        } else if (const auto ref = node.findAttribute("container")) {
            resolveContainer(node, *ref, p);
        }
        const int self = addPending(std::move(p));
        collect(node, self);
    }

    void resolveContainer(const xml::Node& node, const std::string& ref, Pending& p) const {
        const auto [name, index] = parseRef(ref);
        for (std::size_t i = 0; i < m_pending.size(); ++i) {
            if (m_pending[i].name == name && m_pending[i].index == index) {
                p.containerPending = static_cast<int>(i);
                return;
            }
        }
        p.containerExisting = m_form.find(name, index);
        if (p.containerExisting == nullptr) {
            fail(node, "unknown container " + ref);
        }
    }

    static std::optional<int> measure(const xml::Node& node, const char* name) {
        if (const auto text = node.findAttribute(name)) {
            if (const auto n = parseNumber(*text)) {
                return static_cast<int>(*n);
            }
        }
        return std::nullopt;
    }

    void collectRows(const xml::Node& rows, int framePending) {
        if (framePending < 0 ||
            m_pending[static_cast<std::size_t>(framePending)].kind != ControlKind::Frame) {
            fail(rows, "<rows> must lie inside a frame");
        }
        const xml::Node frame = m_pending[static_cast<std::size_t>(framePending)].node;
        const auto frameWidth = measure(frame, "width");
        const auto frameHeight = measure(frame, "height");
        if (!frameWidth || !frameHeight) {
            fail(rows, "a frame with <rows> needs its width and height");
        }
        const std::string mark = rows.attribute("mark");
        if (mark.rfind(m_imagePrefix, 0) != 0) {
            fail(rows, "the changed mark " + mark + " must begin with " + m_imagePrefix);
        }
        RowMetrics metrics;
        const std::pair<const char*, int*> fields[] = {{"left", &metrics.left},
                                                       {"top", &metrics.top},
                                                       {"pitch", &metrics.pitch},
                                                       {"rowHeight", &metrics.rowHeight},
                                                       {"labelWidth", &metrics.labelWidth},
                                                       {"fieldWidth", &metrics.fieldWidth},
                                                       {"unitWidth", &metrics.unitWidth},
                                                       {"markWidth", &metrics.markWidth},
                                                       {"gap", &metrics.gap}};
        for (const auto& [attribute, field] : fields) {
            if (const auto value = measure(rows, attribute)) {
                *field = *value;
            }
        }
        const std::vector<xml::Node> entries = rows.childElements("row");
        std::vector<RowGeometry> geometry;
        try {
            geometry =
                layoutRows(static_cast<int>(entries.size()), *frameWidth, *frameHeight, metrics);
        } catch (const std::invalid_argument& e) {
            fail(rows, e.what());
        }
        for (std::size_t r = 0; r < entries.size(); ++r) {
            collectRow(entries[r], static_cast<int>(r), geometry[r], mark, framePending);
        }
    }

    void collectRow(const xml::Node& row, int position, const RowGeometry& g,
                    const std::string& mark, int framePending) {
        const ControlKind kind = kindOf(row, row.attribute("kind"));
        if (kind != ControlKind::TextBox && kind != ControlKind::ComboBox &&
            kind != ControlKind::CheckBox && kind != ControlKind::OptionButton &&
            kind != ControlKind::Label) {
            fail(row, "a row's field is a txt, com, chk, opt or lbl, not '" +
                          std::string(kindWord(kind)) + "'");
        }
        const std::string name = row.attribute("name");
        const int index = indexOf(row);
        const std::string tag = row.attribute("tag");
        const auto make = [&](Role role, ControlKind k, std::pair<std::string, int> ref,
                              const Rect& rect, std::string captionKey, std::string rowTag) {
            Pending p;
            p.kind = k;
            p.name = std::move(ref.first);
            p.index = ref.second;
            p.role = role;
            p.node = row;
            p.line = lineOf(row);
            p.containerPending = framePending;
            p.geometry = rect;
            p.captionKey = std::move(captionKey);
            p.tag = std::move(rowTag);
            addPending(std::move(p));
        };
        const auto labelRef = row.findAttribute("label");
        make(Role::RowLabel, ControlKind::Label,
             labelRef ? parseRef(*labelRef) : std::pair{"lbl" + baseName(name), index}, g.label,
             row.attribute("captionKey"), {});
        make(Role::RowField, kind, {name, index}, g.field, {}, tag);
        if (const auto unit = row.findAttribute("unit")) {
            const auto unitRef = row.findAttribute("unitLabel");
            make(Role::RowUnit, ControlKind::Label,
                 unitRef ? parseRef(*unitRef) : std::pair{"lbl" + baseName(name) + "Unit", index},
                 g.unit, *unit, {});
        }
        // The marks of a page form one array, numbered by row.
        int markIndex = position;
        if (const auto explicitIndex = measure(row, "markIndex")) {
            markIndex = *explicitIndex;
        }
        make(Role::RowMark, ControlKind::Image, {mark, markIndex}, g.mark, {}, tag);
    }

    Form& m_form;
    std::string m_file;
    std::string m_imagePrefix = "img";
    std::vector<Pending> m_pending;
    std::set<std::pair<std::string, int>> m_seen;
    std::map<std::string, bool> m_arrayness;
};

// Attributes of <control> that are properties, in the order they are set:
// Min and Max before Value.
constexpr std::pair<const char*, const char*> kAttributes[] = {
    {"tag", "Tag"},
    {"caption", "Caption"},
    {"picture", "Picture"},
    {"left", "Left"},
    {"top", "Top"},
    {"width", "Width"},
    {"height", "Height"},
    {"foreColor", "ForeColor"},
    {"backColor", "BackColor"},
    {"borderStyle", "BorderStyle"},
    {"mousePointer", "MousePointer"},
    {"min", "Min"},
    {"max", "Max"},
    {"value", "Value"},
    {"interval", "Interval"},
    {"checked", "Checked"},
    {"checkBoxes", "CheckBoxes"},
    {"path", "Path"},
    {"pattern", "Pattern"},
    {"text", "Text"},
    {"visible", "Visible"},
    {"enabled", "Enabled"},
};

bool attributeFlag(const xml::Node& node, const char* name, bool fallback) {
    const auto text = node.findAttribute(name);
    return text ? parseBoolean(*text).value_or(fallback) : fallback;
}

ToolbarItemStyle itemStyle(const std::string& word) {
    if (word == "check") {
        return ToolbarItemStyle::Check;
    }
    if (word == "label") {
        return ToolbarItemStyle::Label;
    }
    if (word == "image") {
        return ToolbarItemStyle::Image;
    }
    if (word == "separator") {
        return ToolbarItemStyle::Separator;
    }
    return ToolbarItemStyle::Button;
}

// The children that fill a control's model, and <property> entries.
void applyChildren(Control& c, const xml::Node& node) {
    for (const xml::Node& child : node.childElements()) {
        const std::string element = child.name();
        if (element == "entry") {
            c.addItem(child.attribute("text"));
            if (const auto data = child.findAttribute("itemData")) {
                c.setItemData(c.newIndex(),
                              static_cast<std::int32_t>(parseNumber(*data).value_or(0)));
            }
        } else if (element == "column") {
            ListColumn column;
            column.captionKey = child.attribute("captionKey");
            column.text = child.attribute("text");
            if (const auto width = child.findAttribute("width")) {
                column.width = static_cast<int>(parseNumber(*width).value_or(column.width));
            }
            c.listView().addColumn(std::move(column));
        } else if (element == "node") {
            const std::string key = child.attribute("key");
            c.tree().add(child.attribute("parent"), key, child.attribute("text"),
                         child.attribute("image"));
            c.tree().setExpanded(key, attributeFlag(child, "expanded", false));
        } else if (element == "band") {
            const int band = c.toolbar().addBand(child.attribute("key"));
            c.toolbar().setBandVisible(band, attributeFlag(child, "visible", true));
            for (const xml::Node& i : child.childElements("item")) {
                ToolbarItem item;
                item.key = i.attribute("key");
                item.band = band;
                item.style = itemStyle(i.attribute("style"));
                item.captionKey = i.attribute("captionKey");
                item.text = i.attribute("text");
                item.picture = i.attribute("picture");
                item.toolTipKey = i.attribute("toolTipKey");
                item.enabled = attributeFlag(i, "enabled", true);
                item.pressed = attributeFlag(i, "pressed", false);
                item.visible = attributeFlag(i, "visible", true);
                c.toolbar().addItem(std::move(item));
            }
        } else if (element == "property") {
            c.set(child.attribute("name"), child.attribute("value"));
        }
    }
}

// The look attribute of a <control> or <row>: how the window draws it.
Control::Look lookOf(const xml::Node& node) {
    const std::string word = node.attribute("look");
    if (word == "switch") {
        return Control::Look::Switch;
    }
    if (word == "grouped") {
        return Control::Look::Grouped;
    }
    if (word == "model") {
        return Control::Look::Model;
    }
    if (word == "dateDay") {
        return Control::Look::DateDay;
    }
    if (word == "dateMonth") {
        return Control::Look::DateMonth;
    }
    if (word == "date") {
        return Control::Look::Date;
    }
    return Control::Look::Plain;
}

void applyDeclared(Control& c, const xml::Node& node) {
    c.setLook(lookOf(node));
    c.setCaptionKey(node.attribute("captionKey"));
    c.setToolTipKey(node.attribute("toolTipKey"));
    if (c.kind() == ControlKind::Chart) {
        c.chart().setScientific(node.attribute("chartClass") == "pesgo");
        if (const auto n = node.findAttribute("subsets")) {
            c.chart().setSubsets(static_cast<int>(parseNumber(*n).value_or(0)));
        }
        if (const auto n = node.findAttribute("points")) {
            c.chart().setPoints(static_cast<int>(parseNumber(*n).value_or(0)));
        }
    }
    for (const auto& [attribute, property] : kAttributes) {
        if (const auto value = node.findAttribute(attribute)) {
            c.set(property, *value);
        }
    }
    applyChildren(c, node);
}

void applyRowPart(Control& c, const Pending& p) {
    c.setRowPart(true);
    c.setLeft(p.geometry.left);
    c.setTop(p.geometry.top);
    c.setWidth(p.geometry.width);
    c.setHeight(p.geometry.height);
    if (p.role == Role::RowUnit) {
        // A unit is shown as it is written, in every language.
        c.setCaption(p.captionKey);
    } else {
        c.setCaptionKey(p.captionKey);
    }
    if (!p.tag.empty()) {
        c.setTag(p.tag);
    }
    if (p.role == Role::RowMark) {
        c.setVisible(false);  // shown only while the field holds a change
    }
    if (p.role == Role::RowField) {
        c.setLook(lookOf(p.node));
        applyChildren(c, p.node);
    }
}

}  // namespace

FormLoader::FormLoader(const std::filesystem::path& schemaFile) : m_impl(std::make_unique<Impl>()) {
    const std::string error = m_impl->schemas.add(std::string(kNamespace), schemaFile);
    if (!error.empty()) {
        throw FormLoadError(schemaFile.string(), 0, "the form schema does not compile: " + error);
    }
}

FormLoader::~FormLoader() = default;

void FormLoader::load(Form& form, const std::filesystem::path& file) const {
    std::string bytes;
    if (!xml::ReadFileBytes(file, bytes).empty()) {
        throw FormLoadError(file.string(), 0, "the form file cannot be read");
    }
    loadBytes(form, bytes, file.string());
}

void FormLoader::load(Form& form, const std::vector<std::filesystem::path>& files) const {
    for (const auto& file : files) {
        load(form, file);
    }
}

void FormLoader::loadBytes(Form& form, std::string_view bytes, std::string_view sourceName) const {
    const std::string file(sourceName);
    xml::ParseOptions options;
    options.schemas = &m_impl->schemas;
    xml::LoadResult result = xml::Document::parse(bytes, options);
    if (!result.ok()) {
        const std::string message = result.message();
        throw FormLoadError(file, lineInMessage(message), message);
    }
    const xml::Node root = result.document->root();
    if (root.name() != "form" || root.namespaceUri() != kNamespace) {
        throw FormLoadError(
            file, lineOf(root),
            "not a form file: the root is not <form> in " + std::string(kNamespace));
    }
    const std::vector<Pending> pending = Reader(form, file).read(root);

    std::vector<Control*> created;
    created.reserve(pending.size());
    for (const Pending& p : pending) {
        try {
            Control* container = p.containerPending >= 0
                                     ? created[static_cast<std::size_t>(p.containerPending)]
                                     : p.containerExisting;
            Control& c = form.add(p.kind, p.name, p.index, container);
            created.push_back(&c);
            if (p.role == Role::Declared) {
                applyDeclared(c, p.node);
            } else {
                applyRowPart(c, p);
            }
        } catch (const std::exception& e) {
            for (auto it = created.rbegin(); it != created.rend(); ++it) {
                form.remove(**it);
            }
            throw FormLoadError(file, p.line, e.what());
        }
    }
}

std::vector<std::filesystem::path> FormLoader::standardFiles(
    const std::filesystem::path& formsFolder, std::string_view family) {
    std::vector<std::filesystem::path> files{formsFolder / "common.xml"};
    for (const char* f : {"KT520", "KT540", "PL500"}) {
        if (family.empty() || family == f) {
            std::string name = f;
            for (char& ch : name) {
                ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
            }
            files.push_back(formsFolder / (name + ".xml"));
        }
    }
    return files;
}

}  // namespace kt500::form
