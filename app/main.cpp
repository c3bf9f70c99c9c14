// kt500-dtm: the entry point. The headless life of the control lands with the host.
int main() { return 0; }
