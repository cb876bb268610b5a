/* Writes standard input into the simulated memory at address 0x50: fill_memory /dev/i2c-0 OFFSET <FILE */
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/ioctl.h>

int main(int argc, char** argv) {
  const int bus = argc == 3 ? open(argv[1], O_RDWR) : -1;
  if (bus < 0 || ioctl(bus, I2C_SLAVE, 0x50) != 0) return 2;
  int byte;
  for (int at = atoi(argv[2]); at < 256 && (byte = getchar()) != EOF; ++at) {
    union i2c_smbus_data data = {.byte = (__u8)byte};
    struct i2c_smbus_ioctl_data transfer = {I2C_SMBUS_WRITE, (__u8)at, I2C_SMBUS_BYTE_DATA, &data};
    if (ioctl(bus, I2C_SMBUS, &transfer) != 0) return 1;
  }
  return 0;
}
