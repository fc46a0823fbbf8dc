// The one function that libutils wants of the library that walks stacks: here there is nothing to walk.

struct BacktraceMap;

struct Backtrace {
    static Backtrace* Create(int process, int thread, BacktraceMap* map);
};

Backtrace* Backtrace::Create(int, int, BacktraceMap*) {
    return nullptr;
}
