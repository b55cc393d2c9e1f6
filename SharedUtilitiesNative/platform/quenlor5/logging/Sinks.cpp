#include "logging/Sinks.h"

#include <chrono>
#include <cstdio>
#include <limits>
#include <optional>
#include <utility>

#include "logging/System.h"

namespace Quenlor::NativeLogging
{
namespace
{
using namespace std::chrono_literals;

void WriteToStandardOutput(std::string_view line)
{
    WriteToConsole(stdout, line);
}

void WriteToStandardError(std::string_view line)
{
    WriteToConsole(stderr, line);
}

/// Something that is always there to be written to, and knows by itself how a line ends.
class StreamSink final : public Sink
{
public:
    StreamSink(const AppenderSettings& appender, void (*write)(std::string_view)) : Sink{appender, "\n"}, m_write{write}
    {
    }

private:
    void Write(const Record& record) override { m_write(Format(record)); }

    void (*m_write)(std::string_view);
};

/// A file that other programs may write, move aside and remove as well.
///
/// One that rolls is moved aside when it is full: Editor.log becomes Editor.1.log, what was that Editor.2.log, and so
/// on.
class FileSink final : public Sink
{
public:
    FileSink(const AppenderSettings& appender, QnFileName file, std::string place)
        : Sink{appender, LineEnd()},
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
        std::string text{m_isTorn ? LineEnd() : ""};
        if (m_lost != 0)
            text += Format({LogLevel::Warning, record.logger,
                            "lost records: " + std::to_string(m_lost) + " (" + m_complaint + ")", record.time});
        text += Format(record);
        if (Append(text))
        {
            m_lost = 0;
            return;
        }
        ++m_lost;
        m_failedAt = record.time;
    }

    void CloseFile() override { m_open.reset(); }

    /// @return whether it was written
    bool Append(std::string_view text)
    {
        if (m_open && !(m_size = m_open->SizeAt(m_path)))
            CloseFile(); // the name is another file's by now, or nobody's
        if (!m_open && !Open())
            return false;
        const std::uintmax_t size = m_size.value_or(0);
        if (size != 0 && size + text.length() > m_rollAt && Roll(text.length()))
        {
            CloseFile();
            if (!Open())
                return false;
        }
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
            CloseFile();
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
        // Opened anew, because a forked process shares the lock of an opening.
        const LogFile file{m_path, error};
        if (error || !file.TryLock()) // another program is moving it: this record goes along
            return false;
        if (const auto size = file.SizeAt(m_path); !size || *size + length <= m_limit)
            return true; // another program has moved it
        // The oldest file is given up when all others are in place, not before. A gap is what was killed, or failed.
        unsigned free = 1;
        while (free <= m_count && std::filesystem::exists(Name(free), error))
            ++free;
        for (unsigned number = free; number > 0 && !error; --number)
            std::filesystem::rename(Name(number - 1), Name(number), error);
        if (error)
        {
            m_rollAt = m_size.value_or(0) + m_limit; // the next attempt comes when as much again is written
            Complain("move aside", error);
            return false;
        }
        std::filesystem::remove(Name(m_count + 1), error);
        return true;
    }

    std::filesystem::path Name(unsigned number) const
    {
        if (number == 0)
            return m_path;
        std::filesystem::path name = m_path.parent_path() / m_path.stem();
        return (name += "." + std::to_string(number)) += m_path.extension();
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
    const unsigned m_count;

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
    : m_threshold{appender.threshold}, m_format{MakeFormatter(appender.pattern, lineEnd)}
{
}

void Sink::Log(const Record& record)
{
    if (record.level < m_threshold)
        return;
    const std::scoped_lock lock{m_mutex};
    Write(record);
    if (m_isClosed)
        CloseFile();
}

void Sink::Close()
{
    const std::scoped_lock lock{m_mutex};
    m_isClosed = true;
    CloseFile();
}

std::unique_ptr<Sink> MakeSink(const AppenderSettings& appender, const QnFileName& file, std::string place)
{
    switch (appender.type)
    {
    case AppenderType::Console:
        return std::make_unique<StreamSink>(appender,
                                            appender.toStandardOutput ? WriteToStandardOutput : WriteToStandardError);
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
} // namespace Quenlor::NativeLogging
