#include "logging/Sinks.h"

#include <cstdio>
#include <optional>
#include <string_view>
#include <utility>

#include <spdlog/pattern_formatter.h>

#include "logging/System.h"

namespace Quenlor::NativeLogging
{
namespace
{
class ConsoleSink final : public Sink
{
public:
    explicit ConsoleSink(std::FILE* stream) noexcept : m_stream{stream} {}

private:
    void Write(std::string_view line) override { WriteToConsole(m_stream, line); }

    std::FILE* m_stream;
};

class DebuggerSink final : public Sink
{
    void Write(std::string_view line) override { WriteToDebugger(line); }
};

/// A file that is opened for the first record. What goes wrong is told once.
class FileSink : public Sink
{
public:
    FileSink(QnFileName file, std::string place) : m_file{std::move(file)}, m_place{std::move(place)} {}

protected:
    const QnFileName& File() const noexcept { return m_file; }
    void CloseFile() final { m_open.reset(); }

    bool Open()
    {
        if (m_open || m_hasFailed) // a folder out of reach must not hold up every record
            return m_open.has_value();
        QnFileName::CreateNewDirectory(QnFileName::GetDirectoryName(m_file.GetName()).c_str());
        std::error_code error;
        m_open.emplace(m_file.ToNativePath(), error);
        if (error)
        {
            m_open.reset();
            m_hasFailed = true;
            Complain("open", error);
        }
        return m_open.has_value();
    }

    /// @return whether it was written
    bool Append(std::string_view line)
    {
        if (!Open())
            return false;
        const std::error_code error = m_open->Append(line);
        if (error)
            Complain("write", error);
        return !error;
    }

    void Complain(const char* action, const std::error_code& error)
    {
        if (!std::exchange(m_hasComplained, true))
            Report(m_place + "cannot " + action + " " + NativeName(m_file) + ": " + error.message());
    }

private:
    void Write(std::string_view line) override { Append(line); }

    QnFileName m_file;
    std::string m_place;
    std::optional<LogFile> m_open;
    bool m_hasFailed = false;
    bool m_hasComplained = false;
};

/// A file that is moved aside when it is full: Editor.log becomes Editor.1.log, what was that Editor.2.log, and so on.
class RollingFileSink final : public FileSink
{
public:
    RollingFileSink(const AppenderSettings& appender, const QnFileName& file, std::string place)
        : FileSink{file, std::move(place)}, m_limit{appender.maxSize}, m_count{appender.count}
    {
    }

private:
    void Write(std::string_view line) override
    {
        if (m_size == Unknown)
            m_size = SizeOnDisk();
        if (m_size != 0 && m_size + line.length() > m_limit)
            Roll();
        if (Append(line))
            m_size += line.length();
    }

    std::uintmax_t SizeOnDisk() const
    {
        std::error_code error;
        const std::uintmax_t size = std::filesystem::file_size(File().ToNativePath(), error);
        return error ? 0 : size;
    }

    std::filesystem::path Name(unsigned number) const
    {
        const std::filesystem::path file = File().ToNativePath();
        if (number == 0)
            return file;
        std::filesystem::path name = file.parent_path() / file.stem();
        return (name += "." + std::to_string(number)) += file.extension();
    }

    void Roll()
    {
        CloseFile();
        std::error_code error;
        if (m_count == 0)
            std::filesystem::remove(Name(0), error);
        for (unsigned number = m_count; number > 0 && !error; --number)
        {
            if (std::filesystem::exists(Name(number - 1), error))
                std::filesystem::rename(Name(number - 1), Name(number), error);
        }
        if (error)
            Complain("move aside", error); // the next attempt comes when as much again is written: nothing gets lost
        m_size = 0;
    }

    static constexpr auto Unknown = static_cast<std::uintmax_t>(-1);

    std::uintmax_t m_size = Unknown;
    const std::uintmax_t m_limit;
    const unsigned m_count;
};

std::unique_ptr<Sink> MakeUnformatted(const AppenderSettings& appender, const QnFileName& file, std::string place)
{
    switch (appender.type)
    {
    case AppenderType::Console:
        return std::make_unique<ConsoleSink>(appender.toStandardOutput ? stdout : stderr);
    case AppenderType::File:
        return std::make_unique<FileSink>(file, std::move(place));
    case AppenderType::RollingFile:
        return std::make_unique<RollingFileSink>(appender, file, std::move(place));
    case AppenderType::Debugger:
        return std::make_unique<DebuggerSink>();
    case AppenderType::Null:
        break;
    }
    return nullptr;
}
} // namespace

spdlog::level::level_enum ToSpdlog(LogLevel level) noexcept
{
    static_assert(static_cast<int>(LogLevel::Warning) == spdlog::level::warn);
    static_assert(static_cast<int>(LogLevel::Off) == spdlog::level::off);
    return static_cast<spdlog::level::level_enum>(level);
}

void Sink::Close()
{
    const std::scoped_lock lock{mutex_};
    m_isClosed = true;
    CloseFile();
}

void Sink::sink_it_(const spdlog::details::log_msg& record)
{
    spdlog::memory_buf_t line;
    formatter_->format(record, line);
    Write({line.data(), line.size()});
    if (m_isClosed)
        CloseFile();
}

std::unique_ptr<Sink> MakeSink(const AppenderSettings& appender, const QnFileName& file, std::string place)
{
    std::unique_ptr<Sink> sink = MakeUnformatted(appender, file, std::move(place));
    if (!sink)
        return nullptr;
    const bool isFile = !appender.path.empty(); // consoles know a line's end by themselves
    sink->set_formatter(std::make_unique<spdlog::pattern_formatter>(appender.pattern, spdlog::pattern_time_type::local,
                                                                    isFile ? spdlog::details::os::default_eol : "\n"));
    sink->set_level(ToSpdlog(appender.threshold));
    return sink;
}
} // namespace Quenlor::NativeLogging
