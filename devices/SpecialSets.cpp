#include "devices/SpecialSets.h"

namespace kt500::devices {

namespace {

std::string triple(std::string_view name, std::string_view type) {
    std::string text;
    AppendSeparated(text, name);
    AppendSeparated(text, type);
    AppendSeparated(text, "noUnit");
    return text;
}

SpecialSet makeSet(std::initializer_list<std::pair<std::string_view, std::string_view>> items,
                   bool restoreDeclined) {
    SpecialSet set{{}, restoreDeclined};
    for (const auto& [name, type] : items) {
        set.triples += triple(name, type);
    }
    return set;
}

// "flowVal00" to "flowValNN", each "floatVal", then the optional closing item.
SpecialSet flowSet(int last, std::string_view closing) {
    SpecialSet set{{}, false};
    for (int point = 0; point <= last; ++point) {
        const std::string name =
            std::string("flowVal") + char('0' + point / 10) + char('0' + point % 10);
        set.triples += triple(name, "floatVal");
    }
    if (!closing.empty()) {
        set.triples += triple(closing, "integerVal");
    }
    return set;
}

}  // namespace

const SpecialSet* HartSpecialSet(std::string_view strRequestGroup, std::string_view strItem) {
    static const SpecialSet operationUnit = makeSet(
        {{"hartTag", "stringVal"}, {"description", "stringVal"}, {"deviceDate", "stringVal"}},
        true);
    static const SpecialSet splitRange =
        makeSet({{"splitRangeLow", "floatVal"}, {"splitRangeHigh", "floatVal"}}, true);
    static const SpecialSet actuatorLimits = makeSet(
        {{"actuatorFullStrokesLimit", "floatVal"}, {"actuatorReversalsLimit", "floatVal"}}, true);
    static const SpecialSet valveLimits =
        makeSet({{"valveFullStrokesLimit", "floatVal"}, {"valveReversalsLimit", "floatVal"}}, true);
    static const SpecialSet flowModification = flowSet(10, "characterizationControl");

    if (strRequestGroup == "operationUnit") {
        return strItem == "message" ? nullptr : &operationUnit;
    }
    if (strRequestGroup == "valveRelatedConfigurations") {
        return strItem == "splitRangeLow" || strItem == "splitRangeHigh" ? &splitRange : nullptr;
    }
    if (strRequestGroup == "alertSettings") {
        if (strItem == "actuatorFullStrokesLimit" || strItem == "actuatorReversalsLimit") {
            return &actuatorLimits;
        }
        if (strItem == "valveFullStrokesLimit" || strItem == "valveReversalsLimit") {
            return &valveLimits;
        }
        return nullptr;
    }
    if (strRequestGroup == "flowModification") {
        return &flowModification;
    }
    return nullptr;
}

const SpecialSet* ProfibusSpecialSet(std::string_view strRequestGroup, std::string_view strItem) {
    static const SpecialSet inputRange = makeSet({{"inputValueRangeHigh", "floatVal"},
                                                  {"inputValueRangeLow", "floatVal"},
                                                  {"inputValueUnit", "integerVal"}},
                                                 true);
    static const SpecialSet outputBlock = makeSet({{"outputValueRangeHigh", "floatVal"},
                                                   {"outputValueRangeLow", "floatVal"},
                                                   {"outputValueUnit", "integerVal"},
                                                   {"outputValueLimit", "floatVal"},
                                                   {"outputValueQuality", "integerVal"},
                                                   {"rcasInLimit", "floatVal"}},
                                                  true);
    static const SpecialSet flowModification = flowSet(20, "");

    // Names stand first in their triples.
    const auto member = [&](const SpecialSet& set) {
        const std::vector<std::string> fields = SplitSeparated(set.triples);
        for (std::size_t field = 0; field + 1 < fields.size(); field += 3) {
            if (fields[field] == strItem) {
                return true;
            }
        }
        return false;
    };
    if (strRequestGroup == "inputValueConfiguration") {
        return member(inputRange) ? &inputRange : nullptr;
    }
    if (strRequestGroup == "operationMode") {
        return member(outputBlock) ? &outputBlock : nullptr;
    }
    // The points go as one curve; the characterisation is a value of its own.
    if (strRequestGroup == "flowModification") {
        return member(flowModification) ? &flowModification : nullptr;
    }
    return nullptr;
}

}  // namespace kt500::devices
