// convinfo: what the conversion library on this phone reports.

#include <cstdio>

#include "lab/conversion/library.h"

int main() {
    _zylZylcsQuorinPipeLineInfo info = {};
    ZYL_Convert_API_GetPipelineSize(&info);
    printf("pipeline size=%u\n", info.words[0]);
    for (int row = 0; row < 29; ++row) {
        int id = 0;
        unsigned int size = 0;
        int offset = 0;
        ZYL_Convert_API_GetParameterTableInfo(static_cast<_zylQuorinPipelineParamEnum>(row), &id,
                                              &size, &offset);
        printf("row=%d id=0x%x size=%u offset=%d\n", row, static_cast<unsigned>(id), size, offset);
    }
}
