#pragma once

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

/// While it exists, root has no more rights than other users.
class OrdinaryUser final
{
public:
    explicit OrdinaryUser(const std::filesystem::path& scratch)
    {
        using std::filesystem::perms;
        permissions(scratch, perms::owner_all | perms::group_exec | perms::others_exec);
        m_isSwitched = ::geteuid() == 0 && ::seteuid(65534) == 0;
    }
    ~OrdinaryUser()
    {
        if (m_isSwitched && ::seteuid(0) != 0)
            std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    bool m_isSwitched = false;
};
