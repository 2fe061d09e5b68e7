#include "console.h"
#include "crc16.h"
#include "mainwindow.h"

void MainWindow::calc_crc(unsigned char *data, int length, unsigned short *result)
{
    *result = lumarex::crc16(data, length);
    console::report("CRC read: ", *result);
}

unsigned short MainWindow::crc_update(unsigned short crc, unsigned char data,
                                      unsigned short polynomial)
{
    return lumarex::crc16Update(crc, data, polynomial);
}
