// A device family grown to a multiple of its size for the scale benchmarks:
// a share folder beside the real one in which the family's source, its
// GUIInit file and its pages hold every request group, parameter, tree node
// and page N times. Copy c (1 to N-1) renames what it copies with the suffix
// "X<c>" (group "operationUnit" becomes "operationUnitX1", its parameters
// likewise), adds a branch of the tree per branch, a page per page (fields
// of a row page with the element numbers moved by 1000 c, other pages empty
// but present; a plain control of a row takes the suffix) and the copied
// groups to every upload. The control and the
// BL load it through the same code as the real families.
#pragma once

#include "simulator/DeviceCatalogue.h"
#include "simulator/DeviceFamilySource.h"
#include "xml/Document.h"

#include <libxml/tree.h>

#include <QTemporaryDir>

#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace kt500::bench {

struct FamilyCounts {
    int parameters = 0;  // parameters of the device's parameter document
    int groups = 0;      // request groups of the document
    int pages = 0;       // frames of the family's page array
    int treeNodes = 0;   // branches and nodes of the GUIInit tree
};

class ScaledFamily {
public:
    // family: "KT540"; deviceKey: the model whose GUIInit file is written;
    // the page array is "fra" + family.
    ScaledFamily(const std::filesystem::path& shareDir, const std::string& family,
                 const std::string& deviceKey, int times)
        : m_family(family), m_times(times) {
        if (!m_dir.isValid()) {
            throw std::runtime_error("no temporary folder for the scaled family");
        }
        const std::filesystem::path root = m_dir.path().toStdString();
        for (const char* folder : {"schemas", "texts", "units", "icons", "examples"}) {
            std::filesystem::create_directory_symlink(shareDir / folder, root / folder);
        }
        for (const char* folder : {"devices", "guiinit", "forms"}) {
            std::filesystem::create_directory(root / folder);
            for (const auto& entry : std::filesystem::directory_iterator(shareDir / folder)) {
                std::filesystem::copy_file(entry.path(), root / folder / entry.path().filename());
            }
        }
        growSource(root / "devices" / (family + ".xml"));
        const auto source = simulator::DeviceFamilySource::load(root / "devices" / (family + ".xml"));
        const simulator::DeviceModel& model = *simulator::DeviceCatalogue::find(deviceKey);
        for (const auto& file : source.guiInitFiles()) {
            if (file.target.deviceType == model.deviceType && file.target.revision == model.revision) {
                require(source.guiInitDocument(file.target).save(root / "guiinit" / file.fileName));
            }
        }
        growPages(root / "forms" / (lowered(family) + ".xml"));
    }

    [[nodiscard]] std::filesystem::path shareDir() const { return m_dir.path().toStdString(); }

private:
    static std::string lowered(std::string text) {
        for (char& c : text) {
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
        return text;
    }
    static void require(const std::string& error) {
        if (!error.empty()) {
            throw std::runtime_error(error);
        }
    }
    static xml::Document load(const std::filesystem::path& file) {
        xml::LoadResult loaded = xml::Document::load(file);
        if (!loaded.ok()) {
            throw std::runtime_error("cannot read " + file.string());
        }
        return std::move(*loaded.document);
    }
    static xml::Node copyAfter(const xml::Node& original, xml::Node& last) {
        xmlNode* copy = xmlCopyNode(original.raw(), 1);
        xmlAddNextSibling(last.raw(), copy);
        last = xml::Node(copy);
        return last;
    }
    static std::string suffix(int copy) { return "X" + std::to_string(copy); }

    // Renames the parameters, series and includes below a copied group.
    static void renameMembers(xml::Node group, int copy) {
        for (xml::Node member : group.childElements()) {
            if (member.hasAttribute("name")) {
                member.setAttribute("name", member.attribute("name") + suffix(copy));
            }
        }
    }

    void growSource(const std::filesystem::path& file) {
        xml::Document source = load(file);
        xml::Node family = source.root();
        std::vector<xml::Node> groups = family.childElements("group");
        xml::Node tree = family.firstChildElement("tree");
        std::vector<xml::Node> branches = tree.childElements("branch");
        std::vector<xml::Node> uploads = family.childElements("upload");
        std::vector<std::string> uploadGroups;
        for (const xml::Node& upload : uploads) {
            uploadGroups.push_back(upload.attribute("groups"));
        }
        xml::Node lastGroup = groups.back();
        xml::Node lastBranch = branches.back();
        for (int copy = 1; copy < m_times; ++copy) {
            for (const xml::Node& group : groups) {
                xml::Node grown = copyAfter(group, lastGroup);
                grown.setAttribute("name", group.attribute("name") + suffix(copy));
                renameMembers(grown, copy);
            }
            for (const xml::Node& branch : branches) {
                xml::Node grown = copyAfter(branch, lastBranch);
                grown.setAttribute("name", branch.attribute("name") + suffix(copy));
                renameMembers(grown, copy);
            }
            for (std::size_t u = 0; u < uploads.size(); ++u) {
                std::istringstream words(uploadGroups[u]);
                std::string grown = uploads[u].attribute("groups");
                for (std::string word; words >> word;) {
                    grown += " " + word + suffix(copy);
                }
                uploads[u].setAttribute("groups", grown);
            }
        }
        require(source.save(file));
    }

    // A control reference "name(index)" with its index moved; a plain
    // control's name takes the copy's suffix.
    static std::string moved(const std::string& reference, int offset, int copy) {
        const auto open = reference.find('(');
        if (open == std::string::npos) {
            return reference + suffix(copy);
        }
        const int index = std::stoi(reference.substr(open + 1));
        return reference.substr(0, open) + "(" + std::to_string(index + offset) + ")";
    }

    void growPages(const std::filesystem::path& file) {
        xml::Document form = load(file);
        const std::string pageArray = "fra" + m_family;
        std::vector<xml::Node> pages;
        for (const xml::Node& control : form.root().childElements("control")) {
            if (control.attribute("name") == pageArray) {
                pages.push_back(control);
            }
        }
        const int pageCount = static_cast<int>(pages.size());
        xml::Node last = form.root().childElements().back();
        for (int copy = 1; copy < m_times; ++copy) {
            const int offset = 1000 * copy;
            for (int p = 0; p < pageCount; ++p) {
                const xml::Node& page = pages[static_cast<std::size_t>(p)];
                xml::Node grown = copyAfter(page, last);
                const int index = std::stoi(page.attribute("index")) + pageCount * copy;
                grown.setAttribute("index", std::to_string(index));
                grown.setAttribute("tag", page.attribute("tag") + suffix(copy));
                for (xml::Node child : grown.childElements()) {
                    if (child.name() != "rows") {
                        child.remove();
                        continue;
                    }
                    int position = 0;
                    for (xml::Node row : child.childElements("row")) {
                        const int markIndex = row.hasAttribute("markIndex")
                                                  ? std::stoi(row.attribute("markIndex"))
                                                  : position;
                        ++position;
                        row.setAttribute("markIndex", std::to_string(markIndex + offset));
                        if (row.hasAttribute("index")) {
                            row.setAttribute("index",
                                             std::to_string(std::stoi(row.attribute("index")) + offset));
                        } else {
                            row.setAttribute("name", row.attribute("name") + suffix(copy));
                        }
                        if (row.hasAttribute("tag")) {
                            row.setAttribute("tag", row.attribute("tag") + suffix(copy));
                        }
                        for (const char* reference : {"label", "unitLabel"}) {
                            if (row.hasAttribute(reference)) {
                                row.setAttribute(reference,
                                                 moved(row.attribute(reference), offset, copy));
                            }
                        }
                    }
                }
                xml::Node stamp = grown.appendElement("control", grown.namespaceUri());
                stamp.setAttribute("kind", "lbl");
                stamp.setAttribute("name", "lblTimeStamp");
                stamp.setAttribute("index", std::to_string(10000 + index));
                stamp.setAttribute("tag", page.attribute("tag") + suffix(copy));
                for (const auto& [name, value] : {std::pair{"left", "240"}, std::pair{"top", "6870"},
                                                  std::pair{"width", "3600"}, std::pair{"height", "255"}}) {
                    stamp.setAttribute(name, value);
                }
            }
        }
        require(form.save(file));
    }

    QTemporaryDir m_dir;
    std::string m_family;
    int m_times;
};

}  // namespace kt500::bench
