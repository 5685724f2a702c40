/* What it costs to start a process and to end it. */
int main(void) {
    return 0;
}
