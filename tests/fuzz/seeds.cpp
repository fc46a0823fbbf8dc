// zyl_seeds DIRECTORY TABLE...: makes inputs for the fuzzer of the tables' calls, a few calls each.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "lab/cases/case_table.h"
#include "lab/load/transactions.h"

int main(int argc, char** argv) {
    constexpr size_t kLongest = 64;  // as the search takes them
    const std::string kGenerations[] = {"none", "torvane", "maldor"};
    int made = 0;
    for (int i = 2; i < argc; ++i) {
        const Table table = readTable(argv[i]);
        const auto* generation =
                std::find(std::begin(kGenerations), std::end(kGenerations), table.generation);
        // A phone of that generation on which nothing fails.
        const std::string head = {static_cast<char>(generation - kGenerations), 0, 0, 0, 0, 0, 0};
        std::string seed = head;
        for (size_t row = 0; row <= table.cases.size(); ++row) {
            const std::string call =
                    row < table.cases.size() ? bytesFor(table.cases[row].call) : "";
            if (row == table.cases.size() || seed.size() + call.size() > kLongest) {
                std::ofstream(argv[1] + ("/" + table.name) + std::to_string(made++)) << seed;
                seed = head;
            }
            seed += call;
        }
    }
    return made > 0 ? 0 : 1;
}
