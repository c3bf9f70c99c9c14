#include "simulator/DeviceCatalogue.h"

namespace kt500::simulator {

namespace {

std::vector<DeviceModel> buildModels() {
    std::vector<DeviceModel> models;
    // HART positioners: the plain model and its PT (pressure transmitter)
    // variant in revisions 4 to 7, the Q variants in revisions 6 and 7.
    for (const char* revision : {"4", "5", "6", "7"}) {
        models.push_back({std::string("KT520_") + revision, "KT520", revision, "232", "KT520"});
    }
    for (const char* revision : {"4", "5", "6", "7"}) {
        models.push_back(
            {std::string("KT520_PT_") + revision, "KT520_PT", revision, "238", "KT520 PT"});
    }
    for (const char* revision : {"6", "7"}) {
        models.push_back({std::string("KTQ500_") + revision, "KTQ500", revision, "234", "KTQ500"});
    }
    for (const char* revision : {"6", "7"}) {
        models.push_back(
            {std::string("KTQ500_PT_") + revision, "KTQ500_PT", revision, "235", "KTQ500 PT"});
    }
    models.push_back({"KT540_1.0", "KT540", "1.0", "0x0B4F", "KT540"});
    models.push_back({"PL500_1", "PL500", "1", "236", "PL500"});
    models.push_back({"PL500_2", "PL500", "2", "236", "PL500"});
    return models;
}

}  // namespace

const std::vector<DeviceModel>& DeviceCatalogue::models() {
    static const std::vector<DeviceModel> models = buildModels();
    return models;
}

const DeviceModel* DeviceCatalogue::find(std::string_view key) {
    for (const auto& model : models()) {
        if (model.key == key) {
            return &model;
        }
    }
    return nullptr;
}

std::string DeviceCatalogue::keyList() {
    std::string list;
    for (const auto& model : models()) {
        list += list.empty() ? "" : ", ";
        list += model.key;
    }
    return list;
}

}  // namespace kt500::simulator
