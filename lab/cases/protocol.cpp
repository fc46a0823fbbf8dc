#include "lab/cases/protocol.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <utility>

namespace {

// Code, name, arguments and reply; "." for an empty one.
constexpr char kShapes[] =
        "1 GET_PLATFORM_INFO s p  2 GET_ENABLED . ?w  3 SET_ENABLED s ?  4 GET_STEREO_MODE . rw "
        "5 SET_STEREO_MODE m r  6 GET_TUNING r rw  7 SET_TUNING rt r  8 GET_GEQ_GAIN b rw "
        "9 SET_GEQ_GAIN bg r  10 CHECKED_UNKNOWN . -  11 GET_VERSION_STRING . s "
        "12 SET_GEQ_ENABLE s r  13 GET_GEQ_ENABLE . rw  14 GET_GEQ_GAIN_ALL . rwwwwwwwwww "
        "19 SET_SPEAKER_ZYLCS_TUNING BB ?r  20 SET_SECOND_SPEAKER_ZYLCS_TUNING BB ?r "
        "21 GET_SPEAKER_ZYLCS_TUNING_NAME . rn  22 GET_SECOND_SPEAKER_ZYLCS_TUNING_NAME . rn "
        "15 SET_GEQ_GAIN_ALL gggggggggg r  23 SET_ACCESSORY_ZYLCS_TUNING rBB ?r "
        "24 GET_ACCESSORY_ZYLCS_TUNING_NAME r rn  26 GET_STEREO_ROOM_ZYLCS_TUNING_NAME i rn "
        "25 SET_STEREO_ROOM_ZYLCS_TUNING iBB ?r  27 SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING BB ?r "
        "28 GET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING_NAME . rn  29 SET_LISTENING_TEST_RESULT ffff r "
        "30 GET_LISTENING_TEST_RESULT . ?rffff  31 RESET_LISTENING_TEST_RESULT . r "
        "32 GET_ACTIVE_ROUTE x rw  40 SET_ACTIVE_ROUTE x r  41 SET_RELOAD_FLAG s r "
        "1001 GET_ROUTE_MASK r rw  3001 SET_FILE_DESCRIPTOR D r  3004 GET_DB_LEVELS . rwwwwwwwwww "
        "3005 SET_DB_GAIN xxxxxxxxxx r  3002 FETCH_CACHE_BLOCK k r  3003 PUSH_CACHE_BLOCK k r";

using Name = std::pair<int32_t, const char*>;

constexpr Name kResults[] = {{0, "OK"},
                             {-1, "BAD_ARGUMENT"},
                             {-2, "TUNING_NOT_LOADABLE"},
                             {-3, "UPLOAD_FAILED"},
                             {-4, "TUNING_TOO_SHORT"},
                             {-6, "NO_MEMORY"},
                             {-8, "UNSUPPORTED"},
                             {-9, "NOT_AVAILABLE"},
                             {-1000, "CONVERSION_FAILED_6"},
                             {-1001, "CONVERSION_FAILED_7"},
                             {-1002, "CONVERSION_FAILED_5"},
                             {-1003, "CONVERSION_FAILED_8"},
                             {-1004, "CONVERSION_FAILED"},
                             {-1005, "CONVERSION_FAILED_9"},
                             {-3000, "NO_SHARED_REGION"}};
constexpr Name kStatuses[] = {{-1, "PERMISSION_DENIED"},    {-22, "BAD_VALUE"},
                              {-32, "DEAD_OBJECT"},         {-74, "UNKNOWN_TRANSACTION"},
                              {INT32_MIN, "UNKNOWN_ERROR"}, {INT32_MIN + 2, "FAILED_TRANSACTION"}};

template <size_t kCount>
std::string nameIn(const Name (&names)[kCount], int32_t number) {
    const Name* found = std::find_if(std::begin(names), std::end(names),
                                     [number](const Name& name) { return name.first == number; });
    return found == std::end(names) ? std::to_string(number) : found->second;
}

template <typename Test>
const Shape* findShape(Test test) {
    const auto found = std::find_if(shapes().begin(), shapes().end(), test);
    return found == shapes().end() ? nullptr : &*found;
}

}  // namespace

const std::vector<Shape>& shapes() {
    static const std::vector<Shape> all = [] {
        std::istringstream text(kShapes);
        std::vector<Shape> read;
        for (Shape s; text >> s.code >> s.name >> s.arguments >> s.reply;) {
            if (s.arguments == ".") s.arguments.clear();
            read.push_back(s);
        }
        return read;
    }();
    return all;
}

const Shape* shapeOf(uint32_t code) {
    return findShape([code](const Shape& shape) { return shape.code == code; });
}

const Shape* shapeNamed(const std::string& name) {
    return findShape([&name](const Shape& shape) { return shape.name == name; });
}

std::string resultName(int32_t result) {
    return nameIn(kResults, result);
}

std::string statusName(int32_t status) {
    return nameIn(kStatuses, status);
}
