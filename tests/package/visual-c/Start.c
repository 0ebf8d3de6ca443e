// Where a program begins whose C library has nothing that begins it.
#include <stdlib.h>

int main(void);
void mainCRTStartup(void);

void mainCRTStartup(void)
{
    exit(main());
}
