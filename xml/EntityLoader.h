// The one gate through which libxml2 may read anything but the bytes it was
// handed: the external entity loader that initialiseLibrary installs. It
// denies every URL, except, on this thread and while an EntityAllowance
// lives, the URLs that allowance lists, served from memory.
#pragma once

#include <map>
#include <string>

namespace kt500::xml {

class EntityAllowance {
public:
    // uriToBytes must outlive the allowance.
    explicit EntityAllowance(const std::map<std::string, std::string>& uriToBytes) noexcept;
    ~EntityAllowance();
    EntityAllowance(const EntityAllowance&) = delete;
    EntityAllowance& operator=(const EntityAllowance&) = delete;

private:
    const std::map<std::string, std::string>* m_previous;
};

}  // namespace kt500::xml
