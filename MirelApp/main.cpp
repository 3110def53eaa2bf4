#include "Application.h"
#include "MirelEntryPoint.h"

int main(int argumentCount, char** arguments)
{
    return mirel::MirelEntryPoint::main(argumentCount, arguments, mirel::Application::main);
}
