// Where the program finds its run-time files and its machine settings: an
// installed program uses <prefix>/share/kt500-dtm and <prefix>/etc; a
// program run from its build folder uses the source tree's share/ and the
// build folder's etc/. Nothing needs to be set up by hand.
#pragma once

#include <QString>

#include <filesystem>

namespace kt500::app {

struct InstallLayout {
    QString prefix;                  // the folder above the program's own
    std::filesystem::path shareDir;  // schemas, forms, GUIInit files, texts

    // From the program's folder; builtShareDir is the source tree's share/.
    static InstallLayout Detect(const QString& strProgramDir,
                                const std::filesystem::path& builtShareDir);
};

}  // namespace kt500::app
