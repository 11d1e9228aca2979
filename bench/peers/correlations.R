#!/usr/bin/Rscript
# Times R's package pwr on the tests of one correlation against 0 of our benchmarks and prints one
# JSON object of seconds a call:
#   power           the power of rho .3 at n 50
#   size/RHO        the required n of rho in hundredths at power .8
#   power_curve     100 powers, n 5 to 500 at rho .3
#   size_curve      100 required n, rho .1 to .892
# pwr.r.test approximates the distribution of r by Fisher's z with its bias; ours is exact.
#
# Run: Rscript correlations.R        (Debian packages r-base-core and r-cran-pwr)

here <- dirname(sub("--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE)))
source(file.path(here, "timing.R"))
suppressMessages(library(pwr))

alpha <- 0.05
power <- function(size, rho) pwr.r.test(n = size, r = rho, sig.level = alpha)$power
required_size <- function(rho) pwr.r.test(r = rho, sig.level = alpha, power = 0.8)$n

result <- list()
result[["power"]] <- seconds(function() power(50, 0.3))
for (rho in c(10, 20, 30, 50, 80)) {
  result[[sprintf("size/%d", rho)]] <- seconds(function() required_size(rho / 100))
}
result[["power_curve"]] <- seconds_of_one(function() for (i in 1:100) power(5 * i, 0.3))
result[["size_curve"]] <- seconds_of_one(function() for (i in 0:99) required_size(0.1 + 0.008 * i))

print_seconds("pwr", result)
