#include "RegistryChanges.h"

#include <algorithm>

#include "Failure.h"
#include "registry/RegistryFileWriter.h"
#include "registry/RegistryPath.h"

namespace FraxoReg
{
namespace Registry = Quenlor::StandIn::Registry;

/// Takes back the changes of a hive.
class Undo final
{
public:
    void RememberBefore(const Key& hive) { CopyMissing(m_before, hive); }
    void RememberAfter(const Key& hive) { m_after = TextOf(hive); }

    /// A hive that another program has changed meanwhile is left alone.
    void Run(HKEY root) const
    {
        ChangeHive(root,
                   [this](Key& hive)
                   {
            if (TextOf(hive) != m_after)
                throw Failure{"Another program has changed it meanwhile."};
            hive.Clear();
            CopyMissing(hive, m_before);
            return ERROR_SUCCESS;
        });
    }

private:
    static std::string TextOf(const Key& hive) { return WriteRegistryFile(hive, {}, Registry::RegistryFileForm::Hive); }

    Key m_before;
    std::string m_after;
};

namespace
{
void Make(const ValueChange& change, Key& key, ChangeCounts& counts)
{
    if (change.content)
    {
        key.SetValue(change.name, change.content->type, change.content->data);
        ++counts.valuesWritten;
    }
    else if (key.DeleteValue(change.name))
        ++counts.valuesDeleted;
}

/// The key that a change writes to, null when it writes to none.
Key* KeyToWrite(const KeyChange& change, Key& hive, ChangeCounts& counts)
{
    switch (change.kind)
    {
    case KeyChange::Kind::Write:
        ++counts.keysWritten;
        return &hive.Create(change.key.path);
    case KeyChange::Kind::WriteIfExisting:
        return hive.Find(change.key.path);
    case KeyChange::Kind::Delete:
        counts.keysDeleted += hive.Delete(change.key.path) ? 1 : 0;
        return nullptr;
    }
    return nullptr;
}

/// Follows a list of changes to see where each change of HKEY_CLASSES_ROOT belongs when its turn comes: a key that an
/// earlier line makes in the user's classes counts as being there.
class ClassesPlacer final
{
public:
    ClassesPlacer()
    {
        const KeyName classes = InClassesOf(HKEY_CURRENT_USER, {});
        if (HasKey(classes))
            ReadKey(classes, [&](const Key& found) { CopyMissing(m_user.Create(classes.path), found); });
    }

    std::vector<KeyChange> Place(std::vector<KeyChange> changes)
    {
        for (KeyChange& change : changes)
        {
            if (change.key.root == HKEY_CLASSES_ROOT)
                PlaceInClasses(std::move(change));
            else
                Append(std::move(change));
        }
        return std::move(m_placed);
    }

private:
    void PlaceInClasses(KeyChange change)
    {
        const KeyName inUser = InClassesOf(HKEY_CURRENT_USER, change.key.path);
        const KeyName inMachine = InClassesOf(HKEY_LOCAL_MACHINE, change.key.path);
        Key* const userKey = m_user.Find(inUser.path);
        change.key = userKey ? inUser : inMachine;
        if (!userKey || change.kind == KeyChange::Kind::Delete)
            return Append(std::move(change));

        // A value that only the machine's copy has is deleted there.
        KeyChange deletions{inMachine, KeyChange::Kind::WriteIfExisting, {}};
        std::erase_if(change.values,
                      [&](ValueChange& value)
                      {
            const bool isMachines = !value.content && !userKey->FindValue(value.name);
            if (isMachines)
                deletions.values.push_back(std::move(value));
            else
                Make(value, *userKey, m_unused);
            return isMachines;
        });
        m_placed.push_back(std::move(change));
        if (!deletions.values.empty())
            m_placed.push_back(std::move(deletions));
    }

    void Append(KeyChange change)
    {
        if (change.key.root == HKEY_CURRENT_USER)
        {
            Key* const key = KeyToWrite(change, m_user, m_unused);
            for (const ValueChange& value : change.values)
                Make(value, *key, m_unused);
        }
        m_placed.push_back(std::move(change));
    }

    Key m_user; // the hive, of which the classes alone matter
    std::vector<KeyChange> m_placed;
    ChangeCounts m_unused;
};
} // namespace

bool ChangeList::BeginKey(HKEY root, std::string_view path)
{
    if (!Registry::IsLegalKeyPath(InClassesOf(root, path).path))
        return false;
    m_changes.push_back({{root, std::string{path}}, KeyChange::Kind::Write, {}});
    return true;
}

bool ChangeList::DeleteKey(HKEY root, std::string_view path)
{
    m_changes.push_back({{root, std::string{path}}, KeyChange::Kind::Delete, {}});
    return true;
}

void ChangeList::SetValue(std::string_view name, DWORD type, std::string_view data)
{
    m_changes.back().values.push_back({std::string{name}, ValueChange::Content{type, std::string{data}}});
    m_progress("Reading", ++m_valueCount);
}

void ChangeList::DeleteValue(std::string_view name)
{
    m_changes.back().values.push_back({std::string{name}, {}});
    m_progress("Reading", ++m_valueCount);
}

ChangeCounts ChangeList::Apply()
{
    if (Concerns(HKEY_CLASSES_ROOT))
        m_changes = ClassesPlacer{}.Place(std::move(m_changes));
    ChangeCounts counts;
    if (Concerns(HKEY_LOCAL_MACHINE) && Concerns(HKEY_CURRENT_USER))
        ApplyToBoth(counts);
    else if (!m_changes.empty())
        ApplyTo(m_changes.front().key.root, counts);
    return counts;
}

bool ChangeList::Concerns(HKEY root) const
{
    return std::any_of(m_changes.begin(), m_changes.end(),
                       [root](const KeyChange& change) { return change.key.root == root; });
}

void ChangeList::ApplyToBoth(ChangeCounts& counts) const
{
    // A missing right shows here, before anything is changed.
    RequireWritable(HKEY_LOCAL_MACHINE);
    RequireWritable(HKEY_CURRENT_USER);
    Undo undo;
    ApplyTo(HKEY_LOCAL_MACHINE, counts, &undo);
    try
    {
        ApplyTo(HKEY_CURRENT_USER, counts);
    }
    catch (const Failure& reason)
    {
        try
        {
            undo.Run(HKEY_LOCAL_MACHINE);
        }
        catch (const Failure& failure)
        {
            throw Failure{std::string{reason.what()} +
                          "\nWARNING: the changes of HKEY_LOCAL_MACHINE were made and could not be taken back:\n" +
                          failure.what()};
        }
        throw;
    }
}

void ChangeList::ApplyTo(HKEY root, ChangeCounts& counts, Undo* undo) const
{
    ChangeHive(root,
               [&](Key& hive)
               {
        if (undo)
            undo->RememberBefore(hive);
        for (const KeyChange& change : m_changes)
        {
            Key* const key = change.key.root == root ? KeyToWrite(change, hive, counts) : nullptr;
            for (std::size_t i = 0; key && i < change.values.size(); ++i)
            {
                Make(change.values[i], *key, counts);
                m_progress("Writing", counts.valuesWritten);
            }
        }
        if (undo)
            undo->RememberAfter(hive);
        return ERROR_SUCCESS;
    });
}
} // namespace FraxoReg
