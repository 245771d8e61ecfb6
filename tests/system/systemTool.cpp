// Asks the real system, step by step: what is found once and kept needs a fresh process for each test.

#include "system/SystemSteps.h"

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (const int status = KelvoBase::test::runStep(argv[i]); status != 0) {
            return status;
        }
    }
    return 0;
}
