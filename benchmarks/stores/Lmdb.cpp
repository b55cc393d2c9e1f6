#include <lmdb.h>
#include <stdexcept>

#include "Settings.h"

namespace Benchmarks
{
namespace
{
void Check(int status)
{
    if (status != MDB_SUCCESS)
        throw std::runtime_error(::mdb_strerror(status));
}

MDB_val Bytes(const std::string& text)
{
    return {text.size(), const_cast<char*>(text.data())};
}

/// One database. Reads renew one transaction.
class Store
{
public:
    explicit Store(const std::filesystem::path& folder)
    {
        Check(::mdb_env_create(&m_environment));
        Check(::mdb_env_set_mapsize(m_environment, std::size_t{256} * 1024 * 1024));
        Check(::mdb_env_open(m_environment, folder.c_str(), 0, 0600));
        Change([&](MDB_txn* transaction) { Check(::mdb_dbi_open(transaction, nullptr, 0, &m_database)); });
        Check(::mdb_txn_begin(m_environment, nullptr, MDB_RDONLY, &m_reading));
        ::mdb_txn_reset(m_reading);
    }

    ~Store()
    {
        ::mdb_txn_abort(m_reading);
        ::mdb_env_close(m_environment);
    }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    void Select() const {}

    void Fill(int count)
    {
        Change(
            [&](MDB_txn* transaction)
            {
            for (int i = 0; i < count; ++i)
                Put(transaction, SettingName(i), SettingValue(i));
        });
    }

    std::string Read(const std::string& name)
    {
        Check(::mdb_txn_renew(m_reading));
        MDB_val key = Bytes(name);
        MDB_val data{};
        std::string value;
        if (::mdb_get(m_reading, m_database, &key, &data) == MDB_SUCCESS)
            value.assign(static_cast<const char*>(data.mv_data), data.mv_size);
        ::mdb_txn_reset(m_reading);
        return value;
    }

    void Write(const std::string& name, const std::string& value)
    {
        Change([&](MDB_txn* transaction) { Put(transaction, name, value); });
    }

private:
    template<class Action>
    void Change(Action action)
    {
        MDB_txn* transaction = nullptr;
        Check(::mdb_txn_begin(m_environment, nullptr, 0, &transaction));
        action(transaction);
        Check(::mdb_txn_commit(transaction));
    }

    void Put(MDB_txn* transaction, const std::string& name, const std::string& value) const
    {
        MDB_val key = Bytes(name);
        MDB_val data = Bytes(value);
        Check(::mdb_put(transaction, m_database, &key, &data, 0));
    }

    MDB_env* m_environment = nullptr;
    MDB_dbi m_database = 0;
    MDB_txn* m_reading = nullptr;
};

const bool added = AddStore<Store>("LMDB");
} // namespace
} // namespace Benchmarks
