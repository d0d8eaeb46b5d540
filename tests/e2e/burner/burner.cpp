// Keeps one core busy until it is ended, or until whoever started it is gone.
#include <unistd.h>

int main() {
  const pid_t parent = getppid();
  volatile unsigned long rounds = 0;
  while (rounds % 1000000 != 0 || getppid() == parent) rounds = rounds + 1;
}
