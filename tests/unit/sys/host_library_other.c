/* A library with the same name but without the function. */
int rev_something_else(void);

int rev_something_else(void) {
  return 0;
}
