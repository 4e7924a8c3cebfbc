# Makes the short letter:  pwsh -File Letter.ps1 TEMPLATE RESULT      (full paths)
param([Parameter(Mandatory)][string]$Template, [Parameter(Mandatory)][string]$Result)
$ErrorActionPreference = 'Stop'

$tag = New-Object -ComObject kvVelmor3.kvTag
$library = $tag.Library
[void]$tag.Properties.Add('Name', 'Ada Lovelace', $true)
[void]$tag.Properties.Add('Item', 'an aneroid barometer', $true)
$tag.Value = $library.ReadTextFile($Template)     # last, when all else is set

if (-not $library.SaveTextFile($Result, $tag.Result)) { throw "cannot write $Result" }
$log = $tag.ErrorLog
foreach ($entry in $log) { Write-Warning "$($entry.Name): $($entry.Value)" }
$count = $log.Count
$tag.Dispose()
if ($count -gt 0) { exit 3 }
