// The main function of the targets where libFuzzer is not: tries each beginning of each file that is named.

#include <cstdio>
#include <fstream>
#include <iterator>

#include "Fuzz.h"

int main(int count, char** files)
{
    for (int i = 1; i < count; ++i)
    {
        std::ifstream file{files[i], std::ios::binary};
        const std::string input{std::istreambuf_iterator<char>{file}, {}};
        for (std::size_t size = 0; size <= input.size(); ++size)
        {
            std::fprintf(stderr, "%zu bytes of %s\n", size, files[i]); // the last line names what fails
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), size);
        }
    }
    return count > 1 ? 0 : 1; // without a file nothing has been tried
}
