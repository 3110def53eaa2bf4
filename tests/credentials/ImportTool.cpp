#include "MirelEntryPoint.h"

#include <cstdio>

// The program without its application, for tests of its first code as a process.
int main(int argumentCount, char** arguments)
{
    return mirel::MirelEntryPoint::main(argumentCount, arguments, [](int, char**) {
        std::puts("application");
        return 0;
    });
}
