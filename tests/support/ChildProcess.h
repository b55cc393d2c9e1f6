#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A program that runs beside the test. Written once per system.
class ChildProcess final
{
public:
    /// The program and its arguments, which have no quotes in them and no backslash at the end.
    explicit ChildProcess(const std::vector<std::string>& command);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { Kill(); }

    void Kill();
    int Wait(); ///< @return the exit code; -1 when it was killed

private:
    std::intptr_t m_process = 0; ///< 0 when it has ended.
};
