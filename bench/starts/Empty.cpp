// What any C++ program takes to start and to end.
#include <string>

int main(int argc, char**)
{
    return std::string(static_cast<std::size_t>(argc), ' ').empty() ? 1 : 0;
}
