#!/usr/bin/Rscript
# Times R's package pwr on the one-way analyses of variance of our benchmarks and prints one JSON
# object of seconds a call.
#
# Run: Rscript anova.R        (Debian packages r-base-core and r-cran-pwr)

here <- dirname(sub("--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE)))
source(file.path(here, "timing.R"))
suppressMessages(library(pwr))

groups <- 4
alpha <- 0.05
# Cohen's f of a root mean square standardized effect.
f <- function(rmsse) rmsse * sqrt((groups - 1) / groups)
power <- function(n, rmsse)
  pwr.anova.test(k = groups, n = n, f = f(rmsse), sig.level = alpha)$power
required_size <- function(rmsse)
  pwr.anova.test(k = groups, f = f(rmsse), sig.level = alpha, power = 0.8)$n

result <- list()
result[["anova_power"]] <- seconds(function() power(60, 0.25))
for (rmsse in c(0.05, 0.25, 0.5, 1)) {
  result[[sprintf("anova_size/%g", rmsse)]] <- seconds(function() required_size(rmsse))
}
result[["anova_power_curve"]] <- seconds(function() for (n in 2:101) power(n, 0.25))
result[["anova_power_curve_over_effect"]] <-
  seconds(function() for (i in 0:99) power(20, 0.1 + 0.5 * i / 99))
result[["anova_size_curve"]] <- seconds(function() for (i in 0:99) required_size(0.1 + 0.01 * i))

print_seconds("pwr", result)
