// Prints the lines of one library: abi_layouts pvWapi | pvtrace | pvwapi_c
#include "tests/abi/Layouts.h"

#include <string_view>

int main(int count, char** arguments)
{
    const std::string_view library = count == 2 ? arguments[1] : "";
    if (library == "pvWapi") abi::printClass();
    else if (library == "pvwapi_c") abi::printC();
    else if (library == "pvtrace") abi::printTrace();
    else return 2;
    return 0;
}
