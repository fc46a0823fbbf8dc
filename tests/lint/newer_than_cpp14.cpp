// Each line from "clang-format off" on takes a newer language or library than C++14: an error each.
#include <algorithm>
#include <any>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>
using Map = std::map<int, int>;
using Pair = std::pair<int, int>;
std::mutex gMutex;
struct OneMember {
    int member;
};
struct Immovable {
    Immovable() = default;
    Immovable(const Immovable&) = delete;
};
// clang-format off
inline constexpr int kInline = 1;
namespace in::one {}
static_assert(sizeof(int) == 4);
[[maybe_unused]] static int sUnused;
[[nodiscard]] int result();
enum WithAttribute { kOld [[deprecated]] };
int fallThrough(int x) { switch (x) { case 1: x = 2; [[fallthrough]]; default: return x; } }
int ifInit(int x) { if (int y = x; y > 1) return y; return 0; }
int switchInit(int x) { switch (int y = x; y) { default: return y; } }
int bindings(Pair pair) { auto [a, b] = pair; return a + b; }
auto deduced() { return std::pair(1, 2); }
template <class T> int constexprIf(T) { if constexpr (sizeof(T) > 4) return 1; return 0; }
template <class... T> int fold(T... t) { return (t + ...); }
template <auto N> int automatic();
template <template <class> typename T> struct TypenameOfTemplate {};
Immovable elided() { return Immovable(); }
OneMember designated() { return OneMember{.member = 1}; }
double hexadecimal() { return 0x1.8p3; }
auto constexprLambda() { constexpr auto twice = [](int x) { return x * 2; }; return twice(1); }
std::any gAny;
std::byte gByte;
std::filesystem::path gPath;
std::optional<int> gOptional;
std::string_view gView;
std::variant<int> gVariant;
bool same() { return std::is_same_v<int, int>; }
char* writable(std::string& text) { return text.data(); }
int clamped(int x) { return std::clamp(x, 0, 1); }
const char* firstOf(const std::string& text) { return std::data(text); }
size_t sizeOf(const std::string& text) { return std::size(text); }
int applied(Pair pair) { return std::apply(std::plus<int>(), pair); }
int& emplaced(std::vector<int>& values) { return values.emplace_back(1); }
void locked() { std::scoped_lock lock(gMutex); }
void tried(Map& map) { map.try_emplace(1, 2); }
void merged(Map& map, Map& other) { map.merge(other); }
