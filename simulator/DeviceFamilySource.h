// A device family described as data: one source file under share/devices/
// holds every parameter, request group, closed value list, status, tree page
// and upload group of a family, each optionally bound to revisions and
// variants of the family. DeviceFamilySource reads such a file and composes,
// for one model and revision, the parameter document the BL hands over, the
// GUIInit document of the navigation tree and a data file of the saved
// groups. The format is described in docs/devices.md.
#pragma once

#include "xml/Document.h"

#include <filesystem>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::simulator {

struct DeviceModel;

// A source file that cannot be used: the message names the file and, where
// known, the line ("KT520.xml:12: ...").
class DeviceSourceError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Which member of the family a composed document is for.
struct DeviceTarget {
    std::string deviceType;  // the model word, "KT520_PT"
    std::string revision;    // "7"
};

// A GUIInit file the family publishes: its file name and the model and
// revision whose tree it carries.
struct GuiInitFile {
    std::string fileName;
    DeviceTarget target;
};

class DeviceFamilySource {
public:
    // Parses a source; sourceName names it in messages. Throws
    // DeviceSourceError for malformed XML, unknown elements or attributes,
    // unknown condition words, dangling references, and for a parameter,
    // group or list entry that two definitions give to the same model.
    static DeviceFamilySource parse(std::string_view bytes, const std::string& sourceName);
    static DeviceFamilySource load(const std::filesystem::path& file);

    [[nodiscard]] const std::string& name() const noexcept { return m_name; }
    [[nodiscard]] const std::string& prefix() const noexcept { return m_prefix; }
    [[nodiscard]] const std::vector<std::string>& revisions() const noexcept { return m_revisions; }
    // The model words the family serves, in source order.
    [[nodiscard]] std::vector<std::string> deviceTypes() const;
    [[nodiscard]] bool serves(std::string_view deviceType) const;
    // Every GUIInit file of the family, one per model with a file pattern and
    // revision of that model.
    [[nodiscard]] std::vector<GuiInitFile> guiInitFiles() const;

    // The parameter document of a model of the catalogue (the published
    // identity comes from the model). Throws DeviceSourceError when the
    // family does not serve the model or its revision.
    [[nodiscard]] xml::Document parameterDocument(const DeviceModel& model) const;
    // The GUIInit document (no namespace) of a model and revision.
    [[nodiscard]] xml::Document guiInitDocument(const DeviceTarget& target) const;
    // A data file holding the values of every saved group, as the control
    // exports it: dtm deviceType=published name, revision, one reply a group.
    [[nodiscard]] xml::Document dataFile(const DeviceModel& model) const;

    struct Condition {
        std::set<std::string> revisions;       // empty: every revision
        std::set<std::string> variants;        // empty: any; else one of them
        std::set<std::string> exceptVariants;  // none of them
    };
    struct Resolved;

private:
    struct Model {
        int line = 0;
        std::string deviceType;
        std::set<std::string> variants;
        std::set<std::string> revisions;
        std::string guiInit;  // file name pattern with {revision}, or ""
    };
    struct Parameter {
        int line = 0;
        std::vector<Condition> conditions;
        std::map<std::string, std::string> attributes;  // document attributes
        std::string list;
    };
    struct Member {
        int line = 0;
        std::vector<Condition> conditions;
        std::string name;
    };
    struct Group {
        int line = 0;
        std::vector<Condition> conditions;
        std::string name;
        std::string requestCount;  // "" computes it
        std::string save;
        std::string lastUpdate;
        std::vector<Member> members;
    };
    struct Entry {
        int line = 0;
        std::vector<Condition> conditions;
        std::string key;
        std::string value;
    };
    struct List {
        int line = 0;
        std::string name;
        std::vector<Entry> entries;
    };
    struct StatusGroup {
        int line = 0;
        std::vector<Condition> conditions;
        std::string name;
        std::vector<Entry> statuses;  // key: status name, value: class
    };
    struct TreeEntry {
        int line = 0;
        std::vector<Condition> conditions;
        std::string name;
        std::string offline;
    };
    struct Branch {
        TreeEntry entry;
        std::vector<TreeEntry> nodes;
    };
    struct Upload {
        int line = 0;
        std::string name;
        std::vector<std::string> groups;
    };

    friend class SourceReader;

    const Model& modelOf(const std::string& deviceType) const;
    [[nodiscard]] bool holds(const std::vector<Condition>& conditions, const Model& model,
                             const std::string& revision) const;
    [[nodiscard]] Resolved resolve(const DeviceTarget& target) const;
    void checkEveryTarget() const;
    [[nodiscard]] std::string where(int line) const;

    std::string m_source;
    std::string m_name;
    std::string m_prefix;
    std::string m_manufacturer;
    std::string m_protocol;
    std::string m_lastUpdate;
    std::vector<std::string> m_revisions;
    std::set<std::string> m_variants;
    std::vector<Model> m_models;
    std::vector<Parameter> m_parameters;
    std::vector<Group> m_groups;
    std::vector<List> m_lists;
    std::vector<StatusGroup> m_statusGroups;
    std::vector<Branch> m_tree;
    std::vector<Upload> m_uploads;
};

// The parameter documents of the catalogue's models, from the family sources
// in one folder (share/devices).
class ParameterDocumentBuilder {
public:
    explicit ParameterDocumentBuilder(std::filesystem::path devicesDir);

    // The family source that serves a model word; loads the folder's
    // sources on first use. Throws DeviceSourceError when a source is bad or
    // no source serves the model.
    [[nodiscard]] const DeviceFamilySource& familyFor(std::string_view deviceType) const;
    [[nodiscard]] xml::Document build(const DeviceModel& model) const;

private:
    std::filesystem::path m_dir;
    mutable std::vector<DeviceFamilySource> m_families;
    mutable bool m_loaded = false;
};

}  // namespace kt500::simulator
