// Benchmarks of the record store and of lookup and data files.
