#include "Commands.h"

int main(int argc, char** argv)
{
    return FraxoInfo::Run(argc, argv);
}
