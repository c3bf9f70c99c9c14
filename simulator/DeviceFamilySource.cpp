#include "simulator/DeviceFamilySource.h"

#include "simulator/DeviceCatalogue.h"
#include "xml/FileText.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace kt500::simulator {

namespace {

constexpr const char* kDataNamespace = "x-schema:QDLDatafileSchema.xml";
constexpr const char* kTypeInfoNamespace = "x-schema:QDLDeviceTypeInfoSchema.xml";

// Beyond this a series is a typo, not a history of the device.
constexpr int kMaxSeriesLength = 100;

std::vector<std::string> words(std::string_view text) {
    std::vector<std::string> result;
    std::istringstream in{std::string(text)};
    for (std::string word; in >> word;) {
        result.push_back(word);
    }
    return result;
}

bool isNumber(const std::string& text) {
    if (text.empty() || text.find_first_of(" \t\r\n") != std::string::npos) {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    (void)std::strtod(text.c_str(), &end);
    return errno == 0 && end == text.c_str() + text.size() &&
           text.find_first_of("xXnN") == std::string::npos;
}

bool isCount(const std::string& text) {
    return !text.empty() && text.size() <= 4 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string twoDigits(int index) {
    return (index < 10 ? "0" : "") + std::to_string(index);
}

std::string replaceAll(std::string text, std::string_view what, std::string_view with) {
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
    return text;
}

}  // namespace

// What one model at one revision gets of the family, in source order.
struct DeviceFamilySource::Resolved {
    struct ResolvedGroup {
        const Group* group;
        std::vector<std::string> members;
    };
    std::vector<const Parameter*> parameters;
    std::map<std::string, const Parameter*, std::less<>> byName;
    std::vector<ResolvedGroup> groups;
    std::set<std::string, std::less<>> groupNames;
};

// Reads the XML form of a source into a DeviceFamilySource, checking every
// element and attribute as it goes.
class SourceReader {
public:
    SourceReader(DeviceFamilySource& out, std::string source)
        : m_out(out), m_source(std::move(source)) {}

    void read(const xml::Node& root) {
        if (root.name() != "family" || !root.namespaceUri().empty()) {
            fail(root, "the document element must be <family> in no namespace, not <" +
                           root.name() + ">");
        }
        allow(root, {"name", "prefix", "manufacturer", "protocol", "revisions", "variants",
                     "lastUpdate"});
        m_out.m_name = required(root, "name");
        m_out.m_prefix = required(root, "prefix");
        m_out.m_manufacturer = root.attribute("manufacturer");
        m_out.m_protocol = root.attribute("protocol");
        m_out.m_lastUpdate = root.attribute("lastUpdate");
        m_out.m_revisions = words(required(root, "revisions"));
        for (const std::string& variant : words(root.attribute("variants"))) {
            m_out.m_variants.insert(variant);
        }
        for (const xml::Node& child : root.childElements()) {
            const std::string kind = child.name();
            if (kind == "model") {
                readModel(child);
            } else if (kind == "list") {
                readList(child);
            } else if (kind == "group") {
                readGroup(child);
            } else if (kind == "statusGroup") {
                readStatusGroup(child);
            } else if (kind == "tree") {
                allow(child, {});
                for (const xml::Node& branch : child.childElements()) {
                    readBranch(branch);
                }
            } else if (kind == "upload") {
                readUpload(child);
            } else {
                fail(child, "unknown element <" + kind + "> in <family>");
            }
        }
        if (m_out.m_models.empty()) {
            fail(root, "the family has no <model>");
        }
        checkReferences();
    }

private:
    using Condition = DeviceFamilySource::Condition;

    static int lineOf(const xml::Node& node) {
        return node.raw() != nullptr ? static_cast<int>(xmlGetLineNo(node.raw())) : 0;
    }

    [[noreturn]] void fail(const xml::Node& node, const std::string& message) const {
        failAt(lineOf(node), message);
    }
    [[noreturn]] void failAt(int line, const std::string& message) const {
        throw DeviceSourceError(m_source + ":" + std::to_string(line) + ": " + message);
    }

    void allow(const xml::Node& node, std::initializer_list<std::string_view> names) const {
        for (const xmlAttr* a = node.raw()->properties; a != nullptr; a = a->next) {
            const std::string_view name(reinterpret_cast<const char*>(a->name));
            if (std::find(names.begin(), names.end(), name) == names.end()) {
                fail(node,
                     "unknown attribute '" + std::string(name) + "' on <" + node.name() + ">");
            }
        }
        if (xml::Node child = node.firstChildElement();
            child && node.name() != "family" && node.name() != "group" && node.name() != "list" &&
            node.name() != "statusGroup" && node.name() != "tree" && node.name() != "branch") {
            fail(child, "<" + node.name() + "> holds no elements");
        }
    }

    std::string required(const xml::Node& node, std::string_view name) const {
        std::string value = node.attribute(name);
        if (words(value).empty()) {
            fail(node, "<" + node.name() + "> needs the attribute '" + std::string(name) + "'");
        }
        return value;
    }

    std::string oneOf(const xml::Node& node, std::string_view name, const std::string& fallback,
                      std::initializer_list<std::string_view> allowed) const {
        const std::optional<std::string> value = node.findAttribute(name);
        if (!value) {
            return fallback;
        }
        if (std::find(allowed.begin(), allowed.end(), *value) == allowed.end()) {
            std::string list;
            for (std::string_view word : allowed) {
                list += (list.empty() ? "" : ", ") + std::string(word);
            }
            fail(node, "'" + *value + "' is no " + std::string(name) + " (" + list + ")");
        }
        return *value;
    }

    std::set<std::string> wordsFrom(const xml::Node& node, std::string_view attribute,
                                    const std::vector<std::string>& known, const char* what) const {
        std::set<std::string> result;
        for (const std::string& word : words(node.attribute(attribute))) {
            if (std::find(known.begin(), known.end(), word) == known.end()) {
                std::string list;
                for (const std::string& k : known) {
                    list += (list.empty() ? "" : " ") + k;
                }
                fail(node, "unknown " + std::string(what) + " '" + word + "' in " +
                               std::string(attribute) + " (the family has: " + list + ")");
            }
            result.insert(word);
        }
        if (node.hasAttribute(attribute) && result.empty()) {
            fail(node, "'" + std::string(attribute) + "' names nothing");
        }
        return result;
    }

    std::vector<Condition> conditionOf(const xml::Node& node,
                                       const std::vector<Condition>& outer) const {
        const std::vector<std::string> variants(m_out.m_variants.begin(), m_out.m_variants.end());
        Condition condition;
        condition.revisions = wordsFrom(node, "revisions", m_out.m_revisions, "revision");
        condition.variants = wordsFrom(node, "variants", variants, "variant");
        condition.exceptVariants = wordsFrom(node, "exceptVariants", variants, "variant");
        std::vector<Condition> all = outer;
        all.push_back(std::move(condition));
        return all;
    }

    void readModel(const xml::Node& node) {
        allow(node, {"deviceType", "variants", "revisions", "guiInit"});
        DeviceFamilySource::Model model;
        model.line = lineOf(node);
        model.deviceType = required(node, "deviceType");
        const std::vector<std::string> variants(m_out.m_variants.begin(), m_out.m_variants.end());
        model.variants = wordsFrom(node, "variants", variants, "variant");
        model.revisions = wordsFrom(node, "revisions", m_out.m_revisions, "revision");
        if (model.revisions.empty()) {
            model.revisions.insert(m_out.m_revisions.begin(), m_out.m_revisions.end());
        }
        model.guiInit = node.attribute("guiInit");
        for (const auto& other : m_out.m_models) {
            if (other.deviceType == model.deviceType) {
                fail(node, "model '" + model.deviceType + "' is declared twice (first at line " +
                               std::to_string(other.line) + ")");
            }
        }
        m_out.m_models.push_back(std::move(model));
    }

    void readList(const xml::Node& node) {
        allow(node, {"name"});
        DeviceFamilySource::List list;
        list.line = lineOf(node);
        list.name = required(node, "name");
        for (const auto& other : m_out.m_lists) {
            if (other.name == list.name) {
                fail(node, "list '" + list.name + "' is declared twice");
            }
        }
        for (const xml::Node& child : node.childElements()) {
            if (child.name() != "entry") {
                fail(child, "unknown element <" + child.name() + "> in <list>");
            }
            allow(child, {"key", "value", "revisions", "variants", "exceptVariants"});
            const std::string value = required(child, "value");
            if (!isNumber(value)) {
                fail(child, "the value '" + value + "' of a list entry is no number");
            }
            list.entries.push_back(
                {lineOf(child), conditionOf(child, {}), required(child, "key"), value});
        }
        m_out.m_lists.push_back(std::move(list));
    }

    // The document attributes of a parameter or series from the source's
    // shorter names, checked for their kind.
    std::map<std::string, std::string> parameterAttributes(const xml::Node& node) const {
        std::map<std::string, std::string> a;
        a["type"] = oneOf(node, "type", "", {"floatVal", "integerVal", "stringVal"});
        if (a["type"].empty()) {
            fail(node, "<" + node.name() + "> needs the attribute 'type'");
        }
        a["access"] = oneOf(node, "access", "readWrite", {"read", "write", "readWrite"});
        a["unit"] = node.findAttribute("unit").value_or("noUnit");
        if (words(a["unit"]).size() != 1) {
            fail(node, "the unit must be one word");
        }
        a["synchronised"] = oneOf(node, "synchronised", "1", {"0", "1", "2"});
        a["minVal"] = node.attribute("min");
        a["maxVal"] = node.attribute("max");
        for (const char* limit : {"minVal", "maxVal"}) {
            if (!a[limit].empty() && !isNumber(a[limit])) {
                fail(node, "the limit '" + a[limit] + "' is no number");
            }
        }
        a["decimals"] = node.findAttribute("decimals").value_or(a["type"] == "floatVal" ? "" : "0");
        if (a["type"] == "stringVal" && !node.hasAttribute("decimals")) {
            a["decimals"] = "";
        }
        if (!a["decimals"].empty() && !isCount(a["decimals"])) {
            fail(node, "decimals '" + a["decimals"] + "' is no count");
        }
        if (a["type"] == "floatVal" && a["decimals"].empty()) {
            fail(node, "a floatVal needs 'decimals'");
        }
        return a;
    }

    void checkValue(const xml::Node& node, const std::map<std::string, std::string>& a,
                    const std::string& value) const {
        const std::string& type = a.at("type");
        if (type == "stringVal") {
            if (!a.at("maxVal").empty() &&
                static_cast<double>(value.size()) > std::strtod(a.at("maxVal").c_str(), nullptr)) {
                fail(node, "the value '" + value + "' is longer than its maximum length");
            }
            return;
        }
        if (value.empty() || value.find('{') != std::string::npos) {
            return;
        }
        if (!isNumber(value)) {
            fail(node, "the value '" + value + "' of a " + type + " is no number");
        }
        if (type == "integerVal" && value.find_first_of(".eE") != std::string::npos) {
            fail(node, "the value '" + value + "' of an integerVal has a fraction");
        }
    }

    void addParameter(const xml::Node& node, const std::string& name,
                      std::map<std::string, std::string> attributes, const std::string& value,
                      const std::vector<Condition>& conditions, DeviceFamilySource::Group& group) {
        checkValue(node, attributes, value);
        attributes["name"] = name;
        attributes["value"] = value;
        DeviceFamilySource::Parameter parameter;
        parameter.line = lineOf(node);
        parameter.conditions = conditions;
        parameter.list = node.attribute("list");
        parameter.attributes = std::move(attributes);
        m_out.m_parameters.push_back(std::move(parameter));
        group.members.push_back({lineOf(node), conditions, name});
    }

    void readGroup(const xml::Node& node) {
        allow(node, {"name", "save", "requestCount", "lastUpdate", "revisions", "variants",
                     "exceptVariants"});
        DeviceFamilySource::Group group;
        group.line = lineOf(node);
        group.conditions = conditionOf(node, {});
        group.name = required(node, "name");
        group.save = oneOf(node, "save", "0", {"0", "1"});
        group.requestCount = node.attribute("requestCount");
        if (!group.requestCount.empty() &&
            (!isCount(group.requestCount) || std::stoi(group.requestCount) > 32767)) {
            fail(node, "requestCount '" + group.requestCount + "' is no count");
        }
        group.lastUpdate = node.findAttribute("lastUpdate").value_or(m_out.m_lastUpdate);
        for (const xml::Node& child : node.childElements()) {
            const std::string kind = child.name();
            if (kind == "parameter") {
                allow(child, {"name", "type", "access", "unit", "value", "min", "max", "decimals",
                              "synchronised", "list", "revisions", "variants", "exceptVariants"});
                addParameter(child, required(child, "name"), parameterAttributes(child),
                             child.attribute("value"), conditionOf(child, group.conditions), group);
            } else if (kind == "series") {
                allow(child,
                      {"name", "type", "access", "unit", "values", "min", "max", "decimals",
                       "synchronised", "from", "to", "revisions", "variants", "exceptVariants"});
                readSeries(child, group);
            } else if (kind == "include") {
                allow(child, {"name", "revisions", "variants", "exceptVariants"});
                group.members.push_back(
                    {lineOf(child), conditionOf(child, group.conditions), required(child, "name")});
            } else {
                fail(child, "unknown element <" + kind + "> in <group>");
            }
        }
        m_out.m_groups.push_back(std::move(group));
    }

    // prefix + two-digit index from..to, one value each or one for all.
    void readSeries(const xml::Node& node, DeviceFamilySource::Group& group) {
        const std::string prefix = required(node, "name");
        const std::string fromText = required(node, "from");
        const std::string toText = required(node, "to");
        if (!isCount(fromText) || !isCount(toText)) {
            fail(node, "from and to must be counts");
        }
        const int from = std::stoi(fromText);
        const int to = std::stoi(toText);
        if (to < from || to > 99 || to - from + 1 > kMaxSeriesLength) {
            fail(node, "a series runs from a lower to a higher index, at most 99");
        }
        const std::vector<std::string> values = words(node.attribute("values"));
        const auto count = static_cast<std::size_t>(to - from + 1);
        if (values.size() > 1 && values.size() != count) {
            fail(node, "the series has " + std::to_string(count) + " items but " +
                           std::to_string(values.size()) + " values");
        }
        const std::map<std::string, std::string> attributes = parameterAttributes(node);
        const std::vector<Condition> conditions = conditionOf(node, group.conditions);
        for (int index = from; index <= to; ++index) {
            const std::string value = values.empty() ? ""
                                      : values.size() == 1
                                          ? values.front()
                                          : values[static_cast<std::size_t>(index - from)];
            addParameter(node, prefix + twoDigits(index), attributes, value, conditions, group);
        }
    }

    void readStatusGroup(const xml::Node& node) {
        allow(node, {"name", "revisions", "variants", "exceptVariants"});
        DeviceFamilySource::StatusGroup group;
        group.line = lineOf(node);
        group.conditions = conditionOf(node, {});
        group.name = required(node, "name");
        for (const xml::Node& child : node.childElements()) {
            if (child.name() != "status") {
                fail(child, "unknown element <" + child.name() + "> in <statusGroup>");
            }
            allow(child, {"name", "class", "revisions", "variants", "exceptVariants"});
            const std::string cls = oneOf(child, "class", "", {"alarm", "warning"});
            if (cls.empty()) {
                fail(child, "<status> needs the attribute 'class'");
            }
            group.statuses.push_back({lineOf(child), conditionOf(child, group.conditions),
                                      required(child, "name"), cls});
        }
        m_out.m_statusGroups.push_back(std::move(group));
    }

    DeviceFamilySource::TreeEntry treeEntry(const xml::Node& node,
                                            const std::vector<Condition>& outer) const {
        allow(node, {"name", "offline", "revisions", "variants", "exceptVariants"});
        const std::string offline = oneOf(node, "offline", "", {"1", "2", "3"});
        if (offline.empty()) {
            fail(node, "<" + node.name() + "> needs the attribute 'offline'");
        }
        return {lineOf(node), conditionOf(node, outer), required(node, "name"), offline};
    }

    void readBranch(const xml::Node& node) {
        if (node.name() != "branch") {
            fail(node, "unknown element <" + node.name() + "> in <tree>");
        }
        DeviceFamilySource::Branch branch;
        branch.entry = treeEntry(node, {});
        for (const xml::Node& child : node.childElements()) {
            if (child.name() != "node") {
                fail(child, "unknown element <" + child.name() + "> in <branch>");
            }
            // A node's own test is independent of its branch's: the tree
            // shows a node whose branch is left out under the branch before.
            branch.nodes.push_back(treeEntry(child, {}));
        }
        m_out.m_tree.push_back(std::move(branch));
    }

    void readUpload(const xml::Node& node) {
        allow(node, {"name", "groups"});
        DeviceFamilySource::Upload upload;
        upload.line = lineOf(node);
        upload.name = required(node, "name");
        upload.groups = words(required(node, "groups"));
        m_out.m_uploads.push_back(std::move(upload));
    }

    void checkReferences() const {
        std::set<std::string> groups;
        for (const auto& group : m_out.m_groups) {
            groups.insert(group.name);
        }
        for (const auto& upload : m_out.m_uploads) {
            for (const std::string& name : upload.groups) {
                if (groups.count(name) == 0) {
                    failAt(upload.line, "upload group '" + upload.name +
                                            "' names the unknown request group '" + name + "'");
                }
            }
        }
        for (const auto& parameter : m_out.m_parameters) {
            if (parameter.list.empty()) {
                continue;
            }
            const bool known = std::any_of(m_out.m_lists.begin(), m_out.m_lists.end(),
                                           [&](const auto& l) { return l.name == parameter.list; });
            if (!known) {
                failAt(parameter.line, "parameter '" + parameter.attributes.at("name") +
                                           "' names the unknown list '" + parameter.list + "'");
            }
        }
    }

    DeviceFamilySource& m_out;
    std::string m_source;
};

DeviceFamilySource DeviceFamilySource::parse(std::string_view bytes,
                                             const std::string& sourceName) {
    xml::LoadResult loaded = xml::Document::parse(bytes);
    if (!loaded.ok()) {
        std::string message = loaded.message();
        // The parser says "line N: ..."; the file's name goes in front.
        if (message.rfind("line ", 0) == 0) {
            const std::size_t colon = message.find(':');
            message = sourceName + ":" + message.substr(5, colon - 5) + message.substr(colon);
        } else {
            message = sourceName + ": " + message;
        }
        throw DeviceSourceError(message);
    }
    DeviceFamilySource source;
    source.m_source = sourceName;
    SourceReader(source, sourceName).read(loaded.document->root());
    source.checkEveryTarget();
    return source;
}

DeviceFamilySource DeviceFamilySource::load(const std::filesystem::path& file) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(file, ec)) {
        throw DeviceSourceError(file.string() + ": no such device source");
    }
    std::string bytes;
    if (!xml::ReadFileBytes(file, bytes).empty()) {
        throw DeviceSourceError(file.string() + ": cannot read the device source");
    }
    return parse(bytes, file.filename().string());
}

std::string DeviceFamilySource::where(int line) const {
    return m_source + ":" + std::to_string(line) + ": ";
}

std::vector<std::string> DeviceFamilySource::deviceTypes() const {
    std::vector<std::string> types;
    for (const Model& model : m_models) {
        types.push_back(model.deviceType);
    }
    return types;
}

bool DeviceFamilySource::serves(std::string_view deviceType) const {
    return std::any_of(m_models.begin(), m_models.end(),
                       [&](const Model& m) { return m.deviceType == deviceType; });
}

const DeviceFamilySource::Model& DeviceFamilySource::modelOf(const std::string& deviceType) const {
    for (const Model& model : m_models) {
        if (model.deviceType == deviceType) {
            return model;
        }
    }
    throw DeviceSourceError(m_source + ": the family " + m_name + " has no model '" + deviceType +
                            "'");
}

std::vector<GuiInitFile> DeviceFamilySource::guiInitFiles() const {
    std::vector<GuiInitFile> files;
    for (const Model& model : m_models) {
        if (model.guiInit.empty()) {
            continue;
        }
        for (const std::string& revision : m_revisions) {
            if (model.revisions.count(revision) != 0) {
                files.push_back({replaceAll(model.guiInit, "{revision}", revision),
                                 {model.deviceType, revision}});
            }
        }
    }
    return files;
}

bool DeviceFamilySource::holds(const std::vector<Condition>& conditions, const Model& model,
                               const std::string& revision) const {
    return std::all_of(conditions.begin(), conditions.end(), [&](const Condition& c) {
        if (!c.revisions.empty() && c.revisions.count(revision) == 0) {
            return false;
        }
        if (!c.variants.empty() &&
            std::none_of(c.variants.begin(), c.variants.end(),
                         [&](const std::string& v) { return model.variants.count(v) != 0; })) {
            return false;
        }
        return std::none_of(c.exceptVariants.begin(), c.exceptVariants.end(),
                            [&](const std::string& v) { return model.variants.count(v) != 0; });
    });
}

DeviceFamilySource::Resolved DeviceFamilySource::resolve(const DeviceTarget& target) const {
    const Model& model = modelOf(target.deviceType);
    if (model.revisions.count(target.revision) == 0) {
        throw DeviceSourceError(where(model.line) + "the model " + model.deviceType +
                                " has no revision '" + target.revision + "'");
    }
    const std::string label = target.deviceType + " revision " + target.revision;
    Resolved resolved;
    for (const Parameter& parameter : m_parameters) {
        if (!holds(parameter.conditions, model, target.revision)) {
            continue;
        }
        const std::string& name = parameter.attributes.at("name");
        if (const auto it = resolved.byName.find(name); it != resolved.byName.end()) {
            throw DeviceSourceError(where(parameter.line) + "parameter '" + name +
                                    "' is defined twice for " + label + " (first at line " +
                                    std::to_string(it->second->line) + ")");
        }
        resolved.byName.emplace(name, &parameter);
        resolved.parameters.push_back(&parameter);
    }
    for (const Group& group : m_groups) {
        if (!holds(group.conditions, model, target.revision)) {
            continue;
        }
        if (!resolved.groupNames.insert(group.name).second) {
            throw DeviceSourceError(where(group.line) + "request group '" + group.name +
                                    "' is defined twice for " + label);
        }
        Resolved::ResolvedGroup entry{&group, {}};
        for (const Member& member : group.members) {
            if (!holds(member.conditions, model, target.revision)) {
                continue;
            }
            if (resolved.byName.count(member.name) == 0) {
                throw DeviceSourceError(where(member.line) + "request group '" + group.name +
                                        "' includes '" + member.name +
                                        "', which is no parameter of " + label);
            }
            if (std::find(entry.members.begin(), entry.members.end(), member.name) !=
                entry.members.end()) {
                throw DeviceSourceError(where(member.line) + "request group '" + group.name +
                                        "' includes '" + member.name + "' twice");
            }
            entry.members.push_back(member.name);
        }
        resolved.groups.push_back(std::move(entry));
    }
    return resolved;
}

void DeviceFamilySource::checkEveryTarget() const {
    for (const Model& model : m_models) {
        for (const std::string& revision : model.revisions) {
            const DeviceTarget target{model.deviceType, revision};
            (void)resolve(target);
            (void)guiInitDocument(target);
        }
    }
}

xml::Document DeviceFamilySource::parameterDocument(const DeviceModel& model) const {
    const Resolved resolved = resolve({model.deviceType, model.revision});
    const Model& source = modelOf(model.deviceType);
    const auto valueOf = [&](const Parameter& parameter) {
        std::string value = parameter.attributes.at("value");
        value = replaceAll(std::move(value), "{deviceTypeId}", model.deviceTypeId);
        value = replaceAll(std::move(value), "{name}", model.name);
        return replaceAll(std::move(value), "{revision}", model.revision);
    };

    xml::Document document = xml::Document::create("dtm", kDataNamespace);
    xml::Node root = document.root();
    xml::Node published = root.appendElement("device", kTypeInfoNamespace)
                              .appendElement("publishedInfo", kTypeInfoNamespace);
    published.setAttribute("deviceTypeId", model.deviceTypeId);
    published.setAttribute("name", model.name);
    published.setAttribute("version", model.revision);
    if (!m_manufacturer.empty()) {
        published.setAttribute("manufacturer", m_manufacturer);
    }
    if (!m_protocol.empty()) {
        published.setAttribute("protocol", m_protocol);
    }

    xml::Node parameters = root.appendElement("persistentData", kDataNamespace)
                               .appendElement("parameters", kDataNamespace);
    for (const Parameter* parameter : resolved.parameters) {
        xml::Node node = parameters.appendElement("parameter", kDataNamespace);
        for (const char* name : {"name", "access", "type", "unit"}) {
            node.setAttribute(name, parameter->attributes.at(name));
        }
        node.setAttribute("value", valueOf(*parameter));
        for (const char* name : {"synchronised", "minVal", "maxVal", "decimals"}) {
            node.setAttribute(name, parameter->attributes.at(name));
        }
    }

    xml::Node groups = root.appendElement("requestGroups", kDataNamespace);
    for (const Resolved::ResolvedGroup& entry : resolved.groups) {
        xml::Node node = groups.appendElement("requestGroup", kDataNamespace);
        node.setAttribute("name", entry.group->name);
        // One reply carries up to eight values; a device action answers once.
        const std::size_t count = entry.members.empty() ? 1 : (entry.members.size() + 7) / 8;
        node.setAttribute("requestCount", entry.group->requestCount.empty()
                                              ? std::to_string(count)
                                              : entry.group->requestCount);
        node.setAttribute("save", entry.group->save);
        const bool holdsValues =
            std::any_of(entry.members.begin(), entry.members.end(), [&](const std::string& n) {
                return !resolved.byName.at(n)->attributes.at("value").empty();
            });
        node.setAttribute("lastUpdate", holdsValues ? entry.group->lastUpdate : "");
        for (const std::string& member : entry.members) {
            node.appendElement("includedParam", kDataNamespace).setAttribute("name", member);
        }
    }

    xml::Node mapped = root.appendElement("mappedParams", kDataNamespace);
    for (const Parameter* parameter : resolved.parameters) {
        if (parameter->list.empty()) {
            continue;
        }
        xml::Node node = mapped.appendElement("mappedParam", kDataNamespace);
        node.setAttribute("name", parameter->attributes.at("name"));
        const auto list = std::find_if(m_lists.begin(), m_lists.end(),
                                       [&](const List& l) { return l.name == parameter->list; });
        for (const Entry& entry : list->entries) {
            if (holds(entry.conditions, source, model.revision)) {
                xml::Node mapping = node.appendElement("mapping", kDataNamespace);
                mapping.setAttribute("name", entry.key);
                mapping.setAttribute("value", entry.value);
            }
        }
    }

    xml::Node status = root.appendElement("deviceStatus", kDataNamespace);
    for (const StatusGroup& group : m_statusGroups) {
        if (!holds(group.conditions, source, model.revision)) {
            continue;
        }
        xml::Node node = status.appendElement("statusGroup", kDataNamespace);
        node.setAttribute("name", group.name);
        for (const Entry& entry : group.statuses) {
            if (holds(entry.conditions, source, model.revision)) {
                xml::Node item = node.appendElement("status", kDataNamespace);
                item.setAttribute("name", entry.key);
                item.setAttribute("class", entry.value);
            }
        }
    }
    return document;
}

xml::Document DeviceFamilySource::guiInitDocument(const DeviceTarget& target) const {
    const Model& model = modelOf(target.deviceType);
    const Resolved resolved = resolve(target);
    xml::Document document = xml::Document::create("dtm");
    xml::Node root = document.root();
    xml::Node tree = root.appendElement("treeView");
    for (const Branch& branch : m_tree) {
        std::vector<const TreeEntry*> nodes;
        for (const TreeEntry& node : branch.nodes) {
            if (holds(node.conditions, model, target.revision)) {
                nodes.push_back(&node);
            }
        }
        if (!holds(branch.entry.conditions, model, target.revision) || nodes.empty()) {
            continue;
        }
        xml::Node out = tree.appendElement("branch");
        out.setAttribute("name", branch.entry.name);
        out.setAttribute("offline", branch.entry.offline);
        for (const TreeEntry* node : nodes) {
            xml::Node leaf = out.appendElement("node");
            leaf.setAttribute("name", node->name);
            leaf.setAttribute("offline", node->offline);
        }
    }
    xml::Node uploads = root.appendElement("uploadGroups");
    for (const Upload& upload : m_uploads) {
        std::vector<std::string> groups;
        for (const std::string& name : upload.groups) {
            if (resolved.groupNames.count(name) != 0) {
                groups.push_back(name);
            }
        }
        if (groups.empty()) {
            throw DeviceSourceError(where(upload.line) + "upload group '" + upload.name +
                                    "' names no request group of " + target.deviceType +
                                    " revision " + target.revision);
        }
        xml::Node out = uploads.appendElement("uploadGroup");
        out.setAttribute("name", upload.name);
        out.setAttribute("count", std::to_string(groups.size()));
        for (const std::string& name : groups) {
            out.appendElement("requestGroup").setAttribute("name", name);
        }
    }
    xml::Node status = root.appendElement("deviceStatus");
    for (const StatusGroup& group : m_statusGroups) {
        if (!holds(group.conditions, model, target.revision)) {
            continue;
        }
        xml::Node node = status.appendElement("statusGroup");
        node.setAttribute("name", group.name);
        for (const Entry& entry : group.statuses) {
            if (holds(entry.conditions, model, target.revision)) {
                xml::Node item = node.appendElement("status");
                item.setAttribute("name", entry.key);
                item.setAttribute("class", entry.value);
            }
        }
    }
    return document;
}

xml::Document DeviceFamilySource::dataFile(const DeviceModel& model) const {
    const xml::Document parameters = parameterDocument(model);
    std::map<std::string, xml::Node, std::less<>> byName;
    const xml::Node list =
        parameters.root().firstChildElement("persistentData").firstChildElement("parameters");
    for (const xml::Node& parameter : list.childElements("parameter")) {
        byName.emplace(parameter.attribute("name"), parameter);
    }
    xml::Document document = xml::Document::create("dtm");
    xml::Node root = document.root();
    root.setAttribute("deviceType", model.name);
    root.setAttribute("revision", model.revision);
    for (const xml::Node& group :
         parameters.root().firstChildElement("requestGroups").childElements("requestGroup")) {
        if (group.attribute("save") != "1") {
            continue;
        }
        xml::Node reply = root.appendElement("communicationResponse");
        reply.setAttribute("name", group.attribute("name"));
        reply.setAttribute("access", "read");
        reply.setAttribute("responseStatus", "ok");
        reply.setAttribute("isFinal", "1");
        reply.setAttribute("errorCode", "");
        for (const xml::Node& included : group.childElements("includedParam")) {
            const xml::Node parameter = byName.at(included.attribute("name"));
            xml::Node item = reply.appendElement("item");
            item.setAttribute("name", parameter.attribute("name"));
            item.setAttribute("unit", parameter.attribute("unit"));
            item.appendElement(parameter.attribute("type")).setText(parameter.attribute("value"));
        }
    }
    return document;
}

ParameterDocumentBuilder::ParameterDocumentBuilder(std::filesystem::path devicesDir)
    : m_dir(std::move(devicesDir)) {}

const DeviceFamilySource& ParameterDocumentBuilder::familyFor(std::string_view deviceType) const {
    if (!m_loaded) {
        std::vector<std::filesystem::path> files;
        std::error_code ec;
        for (const auto& entry : std::filesystem::directory_iterator(m_dir, ec)) {
            if (entry.path().extension() == ".xml") {
                files.push_back(entry.path());
            }
        }
        if (ec) {
            throw DeviceSourceError(m_dir.string() + ": " + ec.message());
        }
        std::sort(files.begin(), files.end());
        for (const auto& file : files) {
            m_families.push_back(DeviceFamilySource::load(file));
        }
        m_loaded = true;
    }
    for (const DeviceFamilySource& family : m_families) {
        if (family.serves(deviceType)) {
            return family;
        }
    }
    throw DeviceSourceError(m_dir.string() + ": no device source describes the model '" +
                            std::string(deviceType) + "'");
}

xml::Document ParameterDocumentBuilder::build(const DeviceModel& model) const {
    return familyFor(model.deviceType).parameterDocument(model);
}

}  // namespace kt500::simulator
