// The one function that libutils wants of the library that walks stacks. Here nobody walks any.

struct BacktraceMap;

struct Backtrace {
    static Backtrace* Create(int process, int thread, BacktraceMap* map);
};

Backtrace* Backtrace::Create(int, int, BacktraceMap*) {
    return nullptr;
}
