#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "RegistryAccess.h"
#include "registry/RegistryFileReader.h"

namespace FraxoReg
{
struct ValueChange
{
    struct Content
    {
        DWORD type;
        std::string data;
    };

    std::string name;
    std::optional<Content> content; ///< None to delete the value.
};

struct KeyChange
{
    enum class Kind
    {
        Write,           ///< Makes the key if it is missing.
        WriteIfExisting, ///< Does nothing if it is missing.
        Delete
    };

    KeyName key;
    Kind kind = Kind::Write;
    std::vector<ValueChange> values;
};

struct ChangeCounts
{
    std::size_t keysWritten = 0;
    std::size_t valuesWritten = 0;
    std::size_t keysDeleted = 0; ///< Those that were there, without what was below them.
    std::size_t valuesDeleted = 0;
};

/// Called now and then with what is being done and how many values it was done for.
using Progress = std::function<void(std::string_view activity, std::size_t values)>;

class Undo;

/// Collects what a registry file asks for.
class ChangeList final : public Quenlor::StandIn::Registry::RegistryFileHandler
{
public:
    explicit ChangeList(Progress progress) : m_progress{std::move(progress)} {}

    bool BeginKey(HKEY root, std::string_view path) override;
    bool DeleteKey(HKEY root, std::string_view path) override;
    void SetValue(std::string_view name, DWORD type, std::string_view data) override;
    void DeleteValue(std::string_view name) override;

    /// Makes all changes in their order, or none.
    /// @throws Failure when a hive cannot be changed; the message says so in the one case where another hive, changed
    ///         before, could not be given back its former state
    ChangeCounts Apply();

private:
    bool Concerns(HKEY root) const;
    void ApplyToBoth(ChangeCounts& counts) const;
    void ApplyTo(HKEY root, ChangeCounts& counts, Undo* undo = nullptr) const;

    Progress m_progress;
    std::vector<KeyChange> m_changes;
    std::size_t m_valueCount = 0;
};
} // namespace FraxoReg
