#!/usr/bin/Rscript
# Times R and its package pwr on the t-tests of our benchmarks and prints one JSON object of seconds
# a call, with the keys of scipy_peers.py, and `process`, a whole Rscript run (by the clock, not the
# processor).
#
# Run: Rscript t_tests.R        (Debian packages r-base-core and r-cran-pwr)

here <- dirname(sub("--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE)))
source(file.path(here, "timing.R"))
suppressMessages(library(pwr))

alpha <- 0.05
power <- function(size, effect)
  pwr.t.test(n = size, d = effect, sig.level = alpha)$power
required_size <- function(effect)
  pwr.t.test(d = effect, sig.level = alpha, power = 0.8)$n
process <- function()
  system2(file.path(R.home("bin"), "Rscript"),
          c("-e", shQuote("pwr::pwr.t.test(d = .5, sig.level = .05, power = .8)")),
          stdout = FALSE)

result <- list()
for (df in c(9, 49, 499, 9999)) {
  result[[sprintf("cdf/%d", df)]] <- seconds(function() pt(2, df, 1))
}
result[["power"]] <- seconds(function() power(50, 0.5))
for (effect in c(0.8, 0.5, 0.2, 0.05)) {
  result[[sprintf("size/%g", effect)]] <- seconds(function() required_size(effect))
}
result[["power_curve"]] <- seconds_of_one(function() for (i in 1:100) power(5 * i, 0.5))
result[["size_curve"]] <-
  seconds_of_one(function() for (i in 0:99) required_size(0.1 + 0.01 * i))
result[["process"]] <- median(sapply(1:5, function(i) system.time(process())[["elapsed"]]))

print_seconds("pwr", result)
