#include <sqlite3.h>
#include <stdexcept>

#include "Settings.h"

namespace Benchmarks
{
namespace
{
struct Close
{
    void operator()(sqlite3* database) const noexcept { ::sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const noexcept { ::sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Close>;

/// One table in a database with a write-ahead log; statements are prepared once.
class Store
{
public:
    explicit Store(const std::filesystem::path& folder)
    {
        sqlite3* database = nullptr;
        ::sqlite3_open((folder / "settings.sqlite").c_str(), &database);
        m_database.reset(database);
        Execute("PRAGMA journal_mode=WAL");
        Execute("PRAGMA synchronous=FULL");
        Execute("CREATE TABLE IF NOT EXISTS settings (name TEXT PRIMARY KEY, value TEXT) WITHOUT ROWID");
        m_read = Prepare("SELECT value FROM settings WHERE name = ?1");
        m_write = Prepare("INSERT OR REPLACE INTO settings VALUES (?1, ?2)");
    }

    void Select() const {}

    void Fill(int count)
    {
        Execute("BEGIN");
        for (int i = 0; i < count; ++i)
            Write(SettingName(i), SettingValue(i));
        Execute("COMMIT");
    }

    std::string Read(const std::string& name)
    {
        Bind(m_read, 1, name);
        std::string value;
        if (::sqlite3_step(m_read.get()) == SQLITE_ROW)
            value.assign(reinterpret_cast<const char*>(::sqlite3_column_text(m_read.get(), 0)),
                         static_cast<std::size_t>(::sqlite3_column_bytes(m_read.get(), 0)));
        ::sqlite3_reset(m_read.get());
        return value;
    }

    void Write(const std::string& name, const std::string& value)
    {
        Bind(m_write, 1, name);
        Bind(m_write, 2, value);
        if (::sqlite3_step(m_write.get()) != SQLITE_DONE)
            throw std::runtime_error("SQLite cannot write");
        ::sqlite3_reset(m_write.get());
    }

private:
    void Execute(const char* command)
    {
        if (::sqlite3_exec(m_database.get(), command, nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error(command);
    }

    Statement Prepare(const char* command)
    {
        sqlite3_stmt* statement = nullptr;
        ::sqlite3_prepare_v2(m_database.get(), command, -1, &statement, nullptr);
        return Statement{statement};
    }

    static void Bind(const Statement& statement, int position, const std::string& text)
    {
        ::sqlite3_bind_text(statement.get(), position, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    }

    std::unique_ptr<sqlite3, Close> m_database;
    Statement m_read;
    Statement m_write;
};

const bool added = AddStore<Store>("SQLite");
} // namespace
} // namespace Benchmarks
