@echo off
cd /d %~dp0
choice /t 2 /d y /n >nul
if exist NelvoUnCompress\NelvoUpdateLog.txt (
    del NelvoUnCompress\NelvoUpdateLog.txt
)
if exist NelvoUnCompress\updateConfig.json (
    del NelvoUnCompress\updateConfig.json
)
if exist NelvoUnCompress\NelvoUpdateState.dat (
    del NelvoUnCompress\NelvoUpdateState.dat
)
xcopy /e /y /i NelvoUnCompress .
rd /s /q NelvoUnCompress
start ./NelvoEditor.exe
del %0