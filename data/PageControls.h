// PageControls: the controls that lie on each page of a frame array, in
// form order, so that the closing of a request group visits the controls
// of its pages alone instead of the whole form. Made on first use and made
// again after any control of the form was added, moved to another
// container or removed (the form reports these as changes of Container and
// Name), or a page's Tag changed.
#pragma once

#include "form/Form.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kt500::data {

class PageControls {
public:
    // The controls whose page (PageOf with frameArray) is page, in form order.
    [[nodiscard]] const std::vector<form::Control*>& on(form::Form& form,
                                                        std::string_view frameArray,
                                                        const form::Control& page);

    // The elements of frameArray whose Tag less its two-letter family
    // prefix is strGroup (the pages of a request group), in index order.
    [[nodiscard]] const std::vector<form::Control*>& pagesOfGroup(form::Form& form,
                                                                  std::string_view frameArray,
                                                                  const std::string& strGroup);

private:
    struct Index {
        bool stale = true;
        std::string frameArray;
        std::unordered_map<const form::Control*, std::vector<form::Control*>> byPage;
        std::unordered_map<std::string, std::vector<form::Control*>> pagesByGroup;
    };
    Index& current(form::Form& form, std::string_view frameArray);

    // The form's observer owns the index: when the form goes, so does the
    // index, and the next use finds it expired and watches the form it is
    // handed then.
    std::weak_ptr<Index> m_index;
    const form::Form* m_form = nullptr;
};

}  // namespace kt500::data
