#include "registry/Hive.h"

#include <cerrno>
#include <ctime>
#include <system_error>
#include <utility>

#include "registry/RegistryFileWriter.h"
#include "registry/RegistryPath.h"
#include "registry/TreeLoader.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
constexpr const char* LockSuffix = ".lock";
constexpr const char* CounterSuffix = ".changes";
constexpr const char* SkippedSuffix = ".skipped";

LSTATUS StatusOf(const std::system_error& error) noexcept
{
    const int code = error.code().value();
    return code == EACCES || code == EPERM || code == EROFS ? ERROR_ACCESS_DENIED : ERROR_REGISTRY_IO_FAILED;
}

std::string TimeNow()
{
    const std::time_t now = std::time(nullptr);
    struct tm parts;
    char text[sizeof "2000-01-01T00:00:00Z"];
    ::gmtime_r(&now, &parts);
    return {text, std::strftime(text, sizeof text, "%FT%TZ", &parts)};
}
} // namespace

Hive::Hive(HKEY root, std::string path) : m_rootKey{root}, m_path{std::move(path)} {}

LSTATUS Hive::Refresh()
{
    if (m_path.empty())
        return ERROR_SUCCESS;
    try
    {
        const std::uint64_t counted = m_counter.Read(); // before the file is looked at: a later change counts on
        if (m_isLoaded && FileVersion::Of(m_path) == m_version)
            m_counted = counted;
        else
            Load();
        return ERROR_SUCCESS;
    }
    catch (const std::system_error& error)
    {
        Forget();
        return StatusOf(error);
    }
}

LSTATUS Hive::RefreshIfAnnounced()
{
    if (m_isLoaded && ChangeCounter::IsSettled(m_counted) && m_counter.Read() == m_counted)
        return ERROR_SUCCESS;
    return Refresh();
}

const Key* Hive::Find(std::string_view path)
{
    if (m_lastGeneration != m_generation || m_lastPath != path)
    {
        m_lastKey = m_root.Find(path);
        m_lastPath = path;
        m_lastGeneration = m_generation;
    }
    return m_lastKey;
}

LSTATUS Hive::CheckWritable() const
try
{
    if (m_path.empty())
        return ERROR_ACCESS_DENIED;
    CheckReplaceable(FollowLinks(m_path));
    return ERROR_SUCCESS;
}
catch (const std::system_error& error)
{
    return StatusOf(error);
}

LSTATUS Hive::Change(const std::function<LSTATUS(Key&)>& edit)
try
{
    LSTATUS status = CheckWritable();
    if (status != ERROR_SUCCESS)
        return status;
    m_file = FollowLinks(m_path);
    MakeFolder(FolderOf(m_file), IsPrivate() ? 0700 : 0755);
    const FileLock lock{m_file + LockSuffix};
    status = Refresh();
    if (status != ERROR_SUCCESS)
        return status;
    status = edit(m_root);
    if (status == ERROR_SUCCESS)
        Commit();
    else
        Forget();
    return status;
}
catch (const std::system_error& error)
{
    Forget();
    return StatusOf(error);
}
catch (...)
{
    Forget();
    throw;
}

void Hive::Load()
{
    Forget();
    m_file = FollowLinks(m_path);
    m_counter = ChangeCounter{m_file + CounterSuffix};
    m_counted = m_counter.Read();
    const std::string text = ReadFile(m_path, m_version);
    if (text.find_first_not_of(" \t\r\n") != std::string::npos)
    {
        TreeLoader loader{m_rootKey, m_root};
        m_problems = ReadRegistryFile(text, RegistryFileDialect::Hive, loader).problems;
    }
    m_isLoaded = true;
}

void Hive::Forget() noexcept
{
    m_isLoaded = false;
    m_root.Clear();
    m_problems.clear();
    ++m_generation;
}

void Hive::Commit()
{
    if (!m_problems.empty())
        SaveSkippedText();
    Replacement next{m_file};
    next.Write(WriteRegistryFile(m_root, RootName(m_rootKey), RegistryFileForm::Hive), FileMode(), m_version);
    {
        const ChangeAnnouncement announcement{m_file + CounterSuffix, FileMode()};
        next.Publish();
    }
    next.Sync();
    m_version = next.Version();
    m_counter = ChangeCounter{m_file + CounterSuffix};
    m_counted = m_counter.Read();
    m_problems.clear();
    ++m_generation;
}

void Hive::SaveSkippedText() const
{
    std::string text = "; " + TimeNow() + ": skipped when " + m_file.substr(m_file.rfind('/') + 1) + " was written\n";
    for (const RegistryFileProblem& problem : m_problems)
        text += "; line " + std::to_string(problem.line) + ": " + problem.reason + '\n' + problem.text + '\n';
    AppendToFile(m_file + SkippedSuffix, text, FileMode());
}

mode_t Hive::FileMode() const noexcept
{
    if (IsPrivate())
        return 0600;
    return m_version.Exists() ? m_version.Status().st_mode & 0777 : 0644;
}
} // namespace Quenlor::StandIn::Registry
