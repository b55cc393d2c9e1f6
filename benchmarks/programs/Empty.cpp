// Built twice: with the C++ library alone, and with ours as well.
int main() {}
