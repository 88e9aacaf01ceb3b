// A library for tests to load.
extern "C" __attribute__((visibility("default"))) int AnswerOfTestModule() {
    return 42;
}
