// Reading a data file from its bytes, before anything of it reaches a page.
// A data file is a recording of replies (dtm, one communicationResponse per
// saved group, one item per included parameter); it comes from outside and
// is checked whole first, so that a refused file changes nothing and an
// accepted one can be replayed without surprises. Pure: no form, no I/O.
#pragma once

#include "xml/Document.h"
#include "xml/SchemaCollection.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kt500::datasets {

// No data file of a KT500 device comes near this; larger files are refused
// unread.
inline constexpr std::size_t kDataFileMaxBytes = 10U * 1024U * 1024U;

// What the session's device knows: its type and revision, and for each
// saved request group the value kind ("floatVal", "integerVal",
// "stringVal", or another word) of each included parameter.
struct DataFileShape {
    std::string deviceType;
    std::string revision;
    std::map<std::string, std::map<std::string, std::string, std::less<>>, std::less<>> groups;
};

// The outcome: the document, or the language key of the reason with a
// detail (a line, a group or an item name). A file of another device or
// revision is refused with reasonKey "errDeviceMismatch" and the file's
// type and revision.
struct DataFileRead {
    std::optional<xml::Document> document;
    std::string reasonKey;
    std::string detail;
    std::string fileDeviceType;
    std::string fileRevision;

    [[nodiscard]] bool ok() const noexcept { return document.has_value(); }
};

// Refused, in this order: an empty file ("dataFileEmpty"), more than
// kDataFileMaxBytes ("dataFileTooLarge"), bytes that are not UTF-8 or a
// declared encoding other than UTF-8 ("dataFileNotUtf8"), a DOCTYPE, which
// is where entities would be declared ("dataFileDoctype"), text that is
// not well-formed XML ("dataFileNotWellFormed"), a document element other
// than dtm ("dataFileNoDtm"), another device type or revision
// ("errDeviceMismatch"), a document that does not validate against the
// communication schema when one is given ("dataFileInvalid"), a group that
// is not a saved group of the device ("dataFileUnknownGroup"), an item that
// is not a parameter of its group ("dataFileUnknownItem"), a value element
// of another kind than the parameter's ("dataFileWrongType") and a number
// that does not read as one ("dataFileBadNumber").
[[nodiscard]] DataFileRead ReadDataFile(std::string_view bytes, const DataFileShape& shape,
                                        const xml::SchemaCollection* schemas);

// Whether bytes are well-formed UTF-8 (no overlong forms, no surrogates).
[[nodiscard]] bool IsUtf8(std::string_view bytes);

// Whether text reads as a number of the value kind: an integer for
// "integerVal", a decimal with "." for "floatVal"; blank text is no value
// and reads.
[[nodiscard]] bool ReadsAsNumber(std::string_view text, std::string_view strType);

}  // namespace kt500::datasets
