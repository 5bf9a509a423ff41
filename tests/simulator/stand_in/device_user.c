/* SPDX-License-Identifier: Apache-2.0 */
/* Usage: device_user STEP...
 *
 * A program that uses the panel's device, as one of somebody else would. It does one step after the other, and prints a
 * line for each: the result, and errno where that is negative.
 *
 *   open, open64, openat, openat64   open the device in this way
 *   fortified                        open it as open() is checked in a program that was built for it
 *   missing, other                   open a file that is not there, and one that is
 *   close
 *   w:ADDRESS:WORD,...               write, all in hexadecimal
 *   r:ADDRESS:COUNT                  read; the words are printed, too
 *   none:COUNT                       write without words
 *   many:COUNT                       write so many zeros to a register
 *   foreign                          a request that is not the device's
 *   elsewhere                        one that is, to another socket
 *   fork                             write in a child that has the descriptor as well
 *   interrupted                      2,000 writes and reads, while a signal comes all the time
 *   threads                          four threads with 500 of them each
 *   wait                             until a line comes in
 */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#ifndef MAP_32BIT
#define MAP_32BIT 0
#endif

#define ROOM 0x20000

struct record {
  uint32_t reserved;
  uint16_t address;
  uint16_t unused;
  uint32_t count;
  uint32_t value;
};

static const unsigned long short_form = 0xC0102400;
static int device = -1;
static uint16_t *words; /* where 32 bits reach */

static uint32_t address_of_words(void) { return (uint32_t)(uintptr_t)words; }

static int transfer(unsigned address, int is_read, uint32_t count, uint32_t value, uint16_t *single) {
  struct record record = {0, 0, 0xDEAD, 0, 0xDEADBEEF};
  record.address = (uint16_t)(address | 0x2000U | (is_read ? 0x4000U : 0U));
  record.count = count;
  if (count == 1)
    record.value = 0xDEAD0000U | value; /* the word is its low half, and the other one stays as it is */
  else if (count > 1)
    record.value = value;
  const int result = ioctl(device, short_form, &record);
  if (count == 1 && record.value >> 16 != 0xDEAD)
    return -2;
  if (single)
    memcpy(single, &record.value, sizeof *single);
  return result;
}

/* Writes a word of its own to a register of its own and reads it back. 0 when that always works. */
static int use_register(unsigned address, int times) {
  for (int i = 0; i < times; ++i) {
    uint16_t word = 0;
    if (transfer(address, 0, 1, (uint32_t)i, NULL) != 0 || transfer(address, 1, 1, 0, &word) != 0 || word != i)
      return -1;
  }
  return 0;
}

static volatile sig_atomic_t signals = 0;
static void count_signal(int number) {
  (void)number;
  ++signals;
}

static int use_register_interrupted(void) {
  struct sigaction action;
  memset(&action, 0, sizeof action);
  action.sa_handler = count_signal; /* without SA_RESTART */
  sigaction(SIGALRM, &action, NULL);
  const struct itimerval often = {{0, 200}, {0, 200}};
  const struct itimerval never = {{0, 0}, {0, 0}};
  setitimer(ITIMER_REAL, &often, NULL);
  int result = 0;
  while (result == 0 && signals < 200)
    result = use_register(0x100, 1000);
  setitimer(ITIMER_REAL, &never, NULL);
  return result;
}

static void *use_own_register(void *address) {
  return use_register((unsigned)(uintptr_t)address, 500) == 0 ? NULL : address;
}

static int use_registers_in_threads(void) {
  pthread_t threads[4];
  int result = 0;
  for (unsigned i = 0; i < 4; ++i)
    pthread_create(&threads[i], NULL, use_own_register, (void *)(uintptr_t)(0x100 + i));
  for (unsigned i = 0; i < 4; ++i) {
    void *failed = NULL;
    pthread_join(threads[i], &failed);
    if (failed)
      result = -1;
  }
  return result;
}

static int use_in_child(void) {
  const pid_t child = fork();
  if (child == 0)
    _exit(transfer(0x900, 0, 1, 0x6600, NULL) == 0 ? 0 : 1);
  int status = -1;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : -1;
}

static int transfer_elsewhere(void) {
  struct record record = {0, 0x2900, 0, 1, 0x6500};
  int sockets[2];
  if (socketpair(AF_UNIX, SOCK_STREAM, 0, sockets) != 0)
    return -3;
  return ioctl(sockets[0], short_form, &record);
}

static int write_words(unsigned address, const char *list) {
  uint32_t count = 0;
  char *rest = NULL;
  for (const char *next = list; *next; next = *rest == ',' ? rest + 1 : rest)
    words[count++] = (uint16_t)strtoul(next, &rest, 16);
  return transfer(address, 0, count, count == 1 ? words[0] : address_of_words(), NULL);
}

static int read_words(unsigned address, uint32_t count) {
  memset(words, 0xEE, ROOM);
  const int result = transfer(address, 1, count, count == 1 ? 0 : address_of_words(), count == 1 ? words : NULL);
  for (uint32_t i = 0; i < count; ++i)
    printf("%04x ", words[i]);
  return result;
}

static int do_step(const char *step) {
  const char *path = "/dev/fpga-reg";
  const int flags = O_RDWR | O_CLOEXEC | (getppid() == 0 ? O_SYNC : 0); /* not known to the compiler */
  unsigned number = 0;
  char list[256];
  uint32_t count = 0;
  if (strcmp(step, "open") == 0)
    return device = open(path, O_RDWR);
  if (strcmp(step, "open64") == 0)
    return device = open64(path, O_RDWR);
  if (strcmp(step, "openat") == 0)
    return device = openat(AT_FDCWD, path, O_RDWR);
  if (strcmp(step, "openat64") == 0)
    return device = openat64(AT_FDCWD, path, O_RDWR);
  if (strcmp(step, "fortified") == 0)
    return device = open(path, flags);
  if (strcmp(step, "missing") == 0)
    return open("/dev/fpga-reg/none", O_RDONLY);
  if (strcmp(step, "other") == 0)
    return open("/dev/null", flags);
  if (strcmp(step, "close") == 0)
    return close(device);
  if (sscanf(step, "w:%x:%255s", &number, list) == 2)
    return write_words(number, list);
  if (sscanf(step, "r:%x:%u", &number, &count) == 2)
    return read_words(number, count);
  if (sscanf(step, "none:%u", &count) == 1)
    return transfer(0x123, 0, count, 0, NULL);
  if (sscanf(step, "many:%u", &count) == 1) {
    memset(words, 0, ROOM);
    return transfer(0x123, 0, count, address_of_words(), NULL);
  }
  if (strcmp(step, "foreign") == 0)
    return ioctl(device, TCGETS, words);
  if (strcmp(step, "elsewhere") == 0)
    return transfer_elsewhere();
  if (strcmp(step, "fork") == 0)
    return use_in_child();
  if (strcmp(step, "interrupted") == 0)
    return use_register_interrupted();
  if (strcmp(step, "threads") == 0)
    return use_registers_in_threads();
  if (strcmp(step, "wait") == 0)
    return fgets(list, sizeof list, stdin) ? 0 : -1;
  exit(2);
}

int main(int argc, char **argv) {
  words = mmap(NULL, ROOM, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_32BIT, -1, 0);
  if (words == MAP_FAILED)
    return 3;
  for (int i = 1; i < argc; ++i) {
    errno = 0;
    const int result = do_step(argv[i]);
    if (result < 0)
      printf("%s: %d errno %d\n", argv[i], result, errno);
    else
      printf("%s: %s\n", argv[i], errno == 0 ? "done" : "done, and errno has changed");
    fflush(stdout);
  }
  return 0;
}
