#include "logging/Sinks.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>

#include <spdlog/pattern_formatter.h> // only here: it takes seconds to compile

#include "logging/System.h"

namespace Quenlor::NativeLogging
{
namespace
{
using namespace std::chrono_literals;

/// Something that is always there to be written to, and converts line ends itself.
class StreamSink final : public Sink
{
public:
    StreamSink(const AppenderSettings& appender, std::function<void(std::string_view)> write)
        : Sink{appender, "\n"}, m_write{std::move(write)}
    {
    }

private:
    void Write(const Record& record) override { m_write(Format(record)); }

    const std::function<void(std::string_view)> m_write;
};

constexpr std::string_view LineEndOfFiles = SPDLOG_EOL;

/// A file that other programs may write, move aside and remove too.
///
/// One that rolls is moved aside when it is full: Editor.log becomes Editor.1.log, the former Editor.1.log becomes
/// Editor.2.log, and so on.
class FileSink final : public Sink
{
public:
    FileSink(const AppenderSettings& appender, QnFileName file, std::string place)
        : Sink{appender, LineEndOfFiles},
          m_file{std::move(file)},
          m_place{std::move(place)},
          m_limit{appender.type == AppenderType::RollingFile ? appender.maxSize : Unlimited},
          m_count{appender.count}
    {
    }

private:
    void Write(const Record& record) override
    {
        if (!m_open && m_lost != 0 && std::chrono::abs(record.time - m_failedAt) < RetryAfter)
        {
            ++m_lost; // a folder out of reach must not hold up every record
            return;
        }
        std::string text{m_isTorn ? LineEndOfFiles : ""};
        if (m_lost != 0)
            text += Format({LogLevel::Warning, record.logger,
                            "lost records: " + std::to_string(m_lost) + " (" + m_complaint + ")", record.time});
        text += Format(record);
        m_lost = Append(text) ? 0 : m_lost + 1;
        m_failedAt = record.time;
    }

    /// @return whether it was written
    bool Append(std::string_view text)
    {
        if (m_open && !(m_size = m_open->SizeAt(m_path)))
            m_open.reset(); // the name has been given to another file, or removed
        if (!m_open && !Open())
            return false;
        const std::uintmax_t size = m_size.value_or(0);
        if (size != 0 && size + text.length() > m_rollAt && Roll(text.length()) && !Open())
            return false;
        std::size_t written = 0;
        const std::error_code error = m_open->Append(text, written);
        if (error)
            Complain("write", error);
        if (written != 0)
            m_isTorn = static_cast<bool>(error);
        return !error;
    }

    bool Open()
    {
        QnFileName::CreateNewDirectory(QnFileName::GetDirectoryName(m_file.GetName()).c_str());
        m_path = m_file.ToNativePath();
        std::error_code error;
        m_open.emplace(m_path, error);
        if (error)
        {
            m_open.reset();
            Complain("open", error);
            return false;
        }
        m_size = m_open->SizeAt(m_path);
        m_rollAt = m_limit;
        return true;
    }

    /// @return whether the name is free for a new file, or has one already
    bool Roll(std::size_t length)
    {
        std::error_code error;
        // Opened again, because a forked process shares the lock of an opening.
        const LogFile file{m_path, error};
        if (error || !file.TryLock()) // another program is moving it: this record goes along
            return false;
        if (const auto size = file.SizeAt(m_path); !size || *size + length <= m_limit)
            return true; // another program has moved it
        // The oldest file is given up when all others are in place, not before. A gap is left by a killed program, or
        // by a failure.
        std::uintmax_t free = 1;
        while (free <= m_count && QnFileName::DoesPathExist(Numbered(free).GetName()))
            ++free;
        for (std::uintmax_t number = free; number > 0 && !error; --number)
            std::filesystem::rename(number == 1 ? m_path : Numbered(number - 1).ToNativePath(),
                                    Numbered(number).ToNativePath(), error);
        if (error)
        {
            m_rollAt = m_size.value_or(0) + m_limit; // the next attempt comes when as much again is written
            Complain("move aside", error);
            return false;
        }
        RemoveFile(Numbered(m_count + 1).ToNativePath());
        return true;
    }

    QnFileName Numbered(std::uintmax_t number) const
    {
        const wchar_t* const name = m_file.GetName();
        std::wstring numbered = QnFileName{QnFileName::DeviceAndDirectory, name}.GetName();
        numbered += QnFileName::GetFileNameWithoutExtension(name).c_str();
        numbered += L'.' + std::to_wstring(number) + QnFileName{QnFileName::Extension, name}.GetName();
        return QnFileName{numbered};
    }

    /// Once for each reason.
    void Complain(const char* action, const std::error_code& error)
    {
        std::string complaint = std::string{"cannot "} + action + " " + NativeName(m_file) + ": " + error.message();
        if (complaint != m_complaint)
            Report(m_place + complaint);
        m_complaint = std::move(complaint);
    }

    static constexpr auto Unlimited = std::numeric_limits<std::uintmax_t>::max();
    static constexpr auto RetryAfter = 1s;

    const QnFileName m_file;
    const std::string m_place;
    const std::uintmax_t m_limit;
    const std::uintmax_t m_count;

    std::filesystem::path m_path; // of the open file
    std::optional<LogFile> m_open;
    std::optional<std::uintmax_t> m_size; // before the record that is being written
    std::uintmax_t m_rollAt = 0;
    bool m_isTorn = false; // a part of a record was written, and no line end

    std::size_t m_lost = 0; // since the last record that was written
    std::chrono::system_clock::time_point m_failedAt;
    std::string m_complaint;
};
} // namespace

Sink::Sink(const AppenderSettings& appender, std::string_view lineEnd)
    : m_threshold{appender.threshold},
      m_formatter{std::make_shared<spdlog::pattern_formatter>(appender.pattern, spdlog::pattern_time_type::local,
                                                              std::string{lineEnd})}
{
}

void Sink::Log(const Record& record)
{
    if (record.level < m_threshold)
        return;
    const std::scoped_lock lock{m_mutex};
    Write(record);
}

std::string Sink::Format(const Record& record) const
{
    static_assert(static_cast<int>(LogLevel::Warning) == spdlog::level::warn);
    static_assert(static_cast<int>(LogLevel::Off) == spdlog::level::off);
    const auto level = static_cast<spdlog::level::level_enum>(record.level);
    spdlog::memory_buf_t line;
    m_formatter->format({record.time, {}, record.logger, level, record.text}, line);
    return {line.data(), line.size()};
}

std::unique_ptr<Sink> MakeSink(const AppenderSettings& appender, const QnFileName& file, std::string place)
{
    switch (appender.type)
    {
    case AppenderType::Console:
        return std::make_unique<StreamSink>(appender, [stream = appender.toStandardOutput ? stdout : stderr](auto line)
                                            { WriteToConsole(stream, line); });
    case AppenderType::File:
    case AppenderType::RollingFile:
        return std::make_unique<FileSink>(appender, file, std::move(place));
    case AppenderType::Debugger:
        return std::make_unique<StreamSink>(appender, WriteToDebugger);
    case AppenderType::Null:
        break;
    }
    return nullptr;
}

void Report(const std::string& line) noexcept
{
    try
    {
        WriteToConsole(stderr, line + "\n");
        WriteToDebugger(line + "\n");
    }
    catch (const std::exception&) // out of memory: the report has nowhere else to go
    {
    }
}
} // namespace Quenlor::NativeLogging
