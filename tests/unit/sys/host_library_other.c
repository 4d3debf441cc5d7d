/* A library of the same name that lacks the function. */
int rev_something_else(void);

int rev_something_else(void) { return 0; }
