#include "SeriesStat.h"

int main(int argc, char** argv)
{
    return seriesstat::SeriesStat().mainImpl(argc, argv);
}
