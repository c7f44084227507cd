// The kernel's own termios (termios2), which takes any rate by number. It cannot share a file
// with <termios.h>, whose structure has the same name.
#include <asm/termbits.h>
#include <sys/ioctl.h>

#include <cstdint>

namespace isolith {

bool SetCustomBaud(int fd, uint32_t baud) {
  struct termios2 t {};
  if (ioctl(fd, TCGETS2, &t) != 0) return false;
  t.c_cflag &= ~(CBAUD | (CBAUD << IBSHIFT));
  t.c_cflag |= BOTHER | (BOTHER << IBSHIFT);
  t.c_ispeed = t.c_ospeed = baud;
  return ioctl(fd, TCSETS2, &t) == 0;
}

}  // namespace isolith
