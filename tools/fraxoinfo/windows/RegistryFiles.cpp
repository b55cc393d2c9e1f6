#include "Doctor.h"

namespace FraxoInfo
{
std::vector<Finding> ExamineRegistryFiles()
{
    return {}; // the system keeps the registry
}
} // namespace FraxoInfo
