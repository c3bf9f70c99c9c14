#include "data/PageControls.h"

#include "data/PageFields.h"

namespace kt500::data {

PageControls::Index& PageControls::current(form::Form& form, std::string_view frameArray) {
    std::shared_ptr<Index> index = m_index.lock();
    if (!index || m_form != &form) {
        index = std::make_shared<Index>();
        form.addObserver([index](const form::PropertyChange& change) {
            if (change.property == form::PropertyId::Container ||
                change.property == form::PropertyId::Name ||
                (change.property == form::PropertyId::Tag &&
                 change.control.name() == index->frameArray)) {
                index->stale = true;
            }
        });
        m_index = index;
        m_form = &form;
    }
    if (index->stale || index->frameArray != frameArray) {
        index->byPage.clear();
        index->pagesByGroup.clear();
        index->frameArray = std::string(frameArray);
        for (form::Control* control : form.controls()) {
            if (const form::Control* page = PageOf(*control, frameArray)) {
                index->byPage[page].push_back(control);
            }
        }
        for (form::Control* page : form.elements(frameArray)) {
            const std::string& tag = page->tag();
            if (tag.size() > 2) {
                index->pagesByGroup[tag.substr(2)].push_back(page);
            }
        }
        index->stale = false;
    }
    return *index;
}

const std::vector<form::Control*>& PageControls::on(form::Form& form,
                                                    std::string_view frameArray,
                                                    const form::Control& page) {
    static const std::vector<form::Control*> kNone;
    const Index& index = current(form, frameArray);
    const auto found = index.byPage.find(&page);
    return found == index.byPage.end() ? kNone : found->second;
}

const std::vector<form::Control*>& PageControls::pagesOfGroup(form::Form& form,
                                                              std::string_view frameArray,
                                                              const std::string& strGroup) {
    static const std::vector<form::Control*> kNone;
    const Index& index = current(form, frameArray);
    const auto found = index.pagesByGroup.find(strGroup);
    return found == index.pagesByGroup.end() ? kNone : found->second;
}

}  // namespace kt500::data
