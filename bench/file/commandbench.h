#pragma once

#include "mainwindow.h"

// Registers the save and load benchmarks on a window that outlives the benchmark run.
void registerCommandBenchmarks(MainWindow &window);
