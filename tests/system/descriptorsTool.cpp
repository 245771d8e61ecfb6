// Names the descriptors that it has been given, with a blank behind each.

#include <fcntl.h>

#include <cstdio>

int main()
{
    for (int number = 0; number < 1024; ++number) {
        if (fcntl(number, F_GETFD) >= 0) {
            std::printf("%d ", number);
        }
    }
    return 0;
}
